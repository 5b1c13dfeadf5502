#pragma once

// What an archive of the XML format reads by.

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

#include <ORVELSerialization/Private/Objects/ObjectClass.h>
#include <ORVELSerialization/Private/Objects/PointerKind.h>
#include <ORVELSerialization/Private/Objects/ReadObjects.h>
#include <ORVELSerialization/Private/Xml/XmlDocument.h>

namespace orvel::details
{

/// The items of a document. All operations that take some throw ArchiveFailure.
class XmlReader
{
public:
  explicit XmlReader(std::unique_ptr<InputOrigin> origin)
    : document(std::move(origin))
  {
  }

  /// Enters the archive's element. \throw IoFailure
  void readHeader();

  void beginItem() {}
  ipUInt64 getNbOpen() const { return document.getNbOpen(); }

  void readBlock(char* data, ipUInt64 sizeInBytes);
  void readString(const std::string& key, std::string& text);

  /// Reads an item that is no string. \return its text, valid until the next one is asked for
  std::string_view readText(const std::string& key);

  bool readBool(const std::string& key);
  template <class Number>
  Number readNumber(const std::string& key, Number minimum, Number maximum);

  void openSection() { document.enter(XmlElement::section, nullptr); }
  void closeSection() { document.leave(); }

  void openObject(const std::string& key) { document.enter(XmlElement::object, &key); }
  void closeObject() { document.leave(); }

  /// Takes a null pointer or a reference whole, and goes into a new object.
  PointerKind takePointer(const std::string& key, ipUInt64& number);

  ObjectClass& openPointer(); ///< the class of the object that takePointer() went into
  void closePointer() { document.leave(); }

  /// Skips an element, or the start or the end of one that holds others. Shared objects keep their ids.
  void skipItem();

  XmlDocument document;
  ReadObjects objects;

private:
  void checkNewObject(const XmlAttributes& attributes) const;

  std::unordered_map<std::string, ObjectClass> _classes; // by name
};

} // namespace orvel::details
