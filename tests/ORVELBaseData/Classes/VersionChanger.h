#pragma once

/// \file
/// \brief Writes an object as a program of the future would: with a higher version of one of its classes.

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <boost/make_shared.hpp>

#include <ORVELSerialization/BaseOArchive.h>
#include <ORVELSerialization/BaseSerializationObject.h>

namespace orvel::test
{

/// \brief Hands everything on to another archive, but for the version of one class, which it replaces.
class VersionChanger : public BaseOArchive
{
public:
  /// \param className whose version becomes newVersion; none of that name: nothing is replaced
  VersionChanger(BaseOArchive& target, std::string className = "", ipUInt64 newVersion = 0)
    : BaseOArchive("changer")
    , _target(target)
    , _className(std::move(className))
    , _newVersion(newVersion)
  {
  }

  using Record = std::pair<std::string, ipUInt64>;

  /// \brief Return the version records that went through, as they were and in their order.
  const std::vector<Record>& getVersions() const { return _versions; }

  bool isElementWise() const override { return _target.isElementWise(); }
  void writeBlock(const void* data, ipUInt64 sizeInBytes) override { _target.writeBlock(data, sizeInBytes); }
  void writeObjectPtr(const SerializationOItem<SerializationObjectPtr>& item) override
  {
    SerializationObjectPtr& relay = _relays[item.getValue().get()];
    if (item.getValue() && !relay)
      relay = boost::make_shared<Relay>(*item.getValue(), *this);
    _target.writeObjectPtr(SerializationOItem<SerializationObjectPtr>(item.getKey(), relay));
  }
  void writeObject(const std::string& key, const BaseSerializationObject& object) override
  {
    _target.writeObject(key, Relay(object, *this));
  }
  void writeBool(const std::string& key, bool value) override { _target.writeBool(key, value); }
  void writeInteger(const std::string& key, ipInt64 value) override { _target.writeInteger(key, value); }
  void writeUnsigned(const std::string& key, ipUInt64 value) override
  {
    if (key == "version" && !_names.empty())
    {
      _versions.emplace_back(_names.back(), value);
      if (_names.back() == _className)
        value = _newVersion;
    }
    _target.writeUnsigned(key, value);
  }
  void writeReal32(const std::string& key, ipReal32 value) override { _target.writeReal32(key, value); }
  void writeReal64(const std::string& key, ipReal64 value) override { _target.writeReal64(key, value); }
  void writeString(const std::string& key, std::string_view value) override
  {
    _target.writeString(key, value);
  }
  void close() override {}

protected:
  void openSection(std::string_view name) override
  {
    _sections.push_back(std::make_unique<ArchiveSectionManager>(_target, std::string(name)));
    _names.emplace_back(name);
  }
  void closeSection() override
  {
    _sections.pop_back();
    _names.pop_back();
  }
  std::string getPlace() const override { return "the changer"; }

private:
  /// Stands for an object, so that its content comes this way too.
  class Relay : public BaseSerializationObject
  {
  public:
    Relay(const BaseSerializationObject& object, VersionChanger& changer)
      : _object(object)
      , _changer(changer)
    {
    }
    const std::string& getClassName() const override { return _object.getClassName(); }
    BaseDynamicObject* createNew() const override { return nullptr; }
    DynamicObjectPtr createShared() const override { return nullptr; }
    bool hasCopySupport() const override { return false; }
    BaseDynamicObject* duplicate() const override { return nullptr; }
    DynamicObjectPtr duplicateShared() const override { return nullptr; }
    BoolResult write(BaseOArchive& /*archive*/) const override { return _object.write(_changer); }

  private:
    const BaseSerializationObject& _object;
    VersionChanger& _changer;
  };

  BaseOArchive& _target;
  std::string _className;
  ipUInt64 _newVersion;
  std::vector<Record> _versions;
  std::map<const BaseSerializationObject*, SerializationObjectPtr> _relays;
  std::vector<std::unique_ptr<ArchiveSectionManager>> _sections;
  std::vector<std::string> _names;
};

} // namespace orvel::test
