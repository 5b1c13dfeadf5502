#pragma once

#include <string>
#include <vector>

#include <ORVELSerialization/Private/Objects/NameTable.h>
#include <ORVELUtil/ScalarTypes.h>

namespace orvel::details
{

/// The versions of classes that an archive has recorded.
class ClassVersions
{
public:
  /// Returns the version of a class, null if there is none; valid until the next call of set().
  const ipUInt32* find(const std::string& className) const
  {
    const std::size_t number = _classNames.find(className);
    return number == NameTable::none ? nullptr : &_versions[number];
  }

  /// Records a version, or replaces it.
  void set(const std::string& className, ipUInt32 version)
  {
    const std::size_t number = _classNames.find(className);
    if (number != NameTable::none)
    {
      _versions[number] = version;
      return;
    }
    _versions.reserve(_versions.size() + 1); // so that name and version are entered both or not at all
    _classNames.add(className);
    _versions.push_back(version);
  }

private:
  NameTable _classNames;
  std::vector<ipUInt32> _versions; // by number in _classNames
};

} // namespace orvel::details
