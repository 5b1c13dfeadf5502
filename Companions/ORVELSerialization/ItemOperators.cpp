#include "ORVELSerialization/ItemOperators.h"

#include <ORVELSerialization/DataType.h>

namespace orvel
{

BaseOArchive& operator<<(BaseOArchive& archive, const SerializationOItem<std::string>& item)
{
  archive.writeString(item.getKey(), item.getValue());
  return archive;
}

BaseIArchive& operator>>(BaseIArchive& archive, const SerializationIItem<std::string>& item)
{
  archive.readString(item.getKey(), item.getValue());
  return archive;
}

BaseOArchive& operator<<(BaseOArchive& archive, const SerializationOItem<boost::filesystem::path>& item)
{
  archive.writeString(item.getKey(), item.getValue().native());
  return archive;
}

BaseIArchive& operator>>(BaseIArchive& archive, const SerializationIItem<boost::filesystem::path>& item)
{
  std::string text;
  archive.readString(item.getKey(), text);
  item.getValue() = text;
  return archive;
}

ORVEL_DEFINE_ENUMERATION_ITEMS(eDataType)

namespace details
{

namespace
{

/// The section's name, made without a visit to the heap: a section is opened for every shared object.
class SharedPtrSectionName
{
public:
  explicit SharedPtrSectionName(const std::string& typeName)
  {
    constexpr std::string_view prefix = "shared_ptr<";
    const std::size_t size = prefix.size() + typeName.size() + 1;
    char* text = _inPlace;
    if (size > sizeof(_inPlace))
    {
      _onHeap.resize(size);
      text = _onHeap.data();
    }
    prefix.copy(text, prefix.size());
    typeName.copy(text + prefix.size(), typeName.size());
    text[size - 1] = '>';
    _name = {text, size};
  }

  std::string_view get() const { return _name; }

private:
  char _inPlace[96];
  std::string _onHeap;
  std::string_view _name;
};

} // namespace

SharedPtrSection::SharedPtrSection(BaseOArchive& archive, const std::string& (*getTypeName)())
  : _section(archive,
             archive.filesSectionNames() ? SharedPtrSectionName(getTypeName()).get() : std::string_view())
{
}

} // namespace details

} // namespace orvel
