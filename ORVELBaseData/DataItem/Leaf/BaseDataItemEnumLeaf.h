#pragma once

/// \file
/// \brief Leaf of an enumerate.

#include <string>

#include <ORVELBaseData/DataItem/Leaf/BaseDataItemLeaf.h>
#include <ORVELUtil/ScalarTypes.h>

namespace orvel
{

/// \brief Item of one enumerate: an integer in memory, a text in archives.
///
/// This class knows no enumeration. A class derived from it, in the library of the enumeration, replaces
/// getEnumNameStr(), fromString() and toString(), which have to be inverse to each other, and all that
/// creates and names objects (\see ORVEL_DECLARE_SERIALIZABLE), so that archives can bring it back. Integers
/// may change from one release of that library to the next, texts may not.
///
/// The class itself can be created, but neither written nor read, as it has a text for no integer.
///
/// Archive version 1: the item "enumValue", the text. A value without a text is not written: write() raises
/// ORVELBaseDataException (eInvalidEnumIntValue), and version records may have been filed. A text without an
/// integer is not read: read() raises ORVELBaseDataException (eInvalidEnumStrValue), and the value is as
/// fromString() left it. The order of the virtual operations is part of the binary interface.
class ORVELBASEDATA_EXPORT BaseDataItemEnumLeaf : public BaseDataItemLeaf
{
  ORVEL_DECLARE_SERIALIZABLE(BaseDataItemEnumLeaf)

public:
  BaseDataItemEnumLeaf(); ///< a leaf whose value is not set

  eDataItemValueType getDataItemValueType() const override; ///< eDIVT_Enum

  virtual std::string getEnumNameStr() const; ///< the name of the enumeration, for messages; here empty

  /// \brief Return the text of the present value, empty if it has none.
  virtual std::string getValueStr() const;

  /// \brief Find the integer of a text.
  /// \return whether there is one; else `value` should be left alone, as it is here always
  virtual bool fromString(const std::string& text, ipUInt32& value) const;

  /// \brief Find the text of an integer.
  /// \return whether there is one, also an empty text; else `text` should be left alone, as it is here always
  virtual bool toString(const ipUInt32& value, std::string& text) const;

  ipUInt32 getEnumValue() const { return _value; }      ///< the integer
  void setEnumValue(ipUInt32 value) { _value = value; } ///< any integer, also one without a text

private:
  ipUInt32 _value;
};

} // namespace orvel
