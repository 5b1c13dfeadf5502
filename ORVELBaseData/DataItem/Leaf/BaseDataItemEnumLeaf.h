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
/// This class knows no enumeration. A derived class, in the library of the enumeration, overrides
/// getEnumNameStr(), fromString() and toString(), the last two inverse to each other, and declares the
/// members of a concrete class (\see ORVEL_DECLARE_SERIALIZABLE), so that archives can create it. A new
/// release of that library may change the integers, but not the texts.
///
/// Objects of this class itself can be created and copied, but neither written nor read: no integer has a
/// text.
///
/// Archive version 1: the item "enumValue", the text. If the value has no text, write() raises
/// ORVELBaseDataException (eInvalidEnumIntValue); version records may already be written. If the text has no
/// value, read() raises ORVELBaseDataException (eInvalidEnumStrValue), and the value is as fromString() left
/// it. The order of the virtual operations is part of the binary interface.
class ORVELBASEDATA_EXPORT BaseDataItemEnumLeaf : public BaseDataItemLeaf
{
  ORVEL_DECLARE_SERIALIZABLE(BaseDataItemEnumLeaf)

public:
  BaseDataItemEnumLeaf(); ///< a leaf whose value is not set

  eDataItemValueType getDataItemValueType() const override; ///< eDIVT_Enum

  virtual std::string getEnumNameStr() const; ///< name of the enumeration, for messages; here empty
  virtual std::string getValueStr() const;    ///< text of the value; empty if it has none

  /// \brief Find the integer of a text.
  /// \return whether the text has one; here always false, and `value` is unchanged
  virtual bool fromString(const std::string& text, ipUInt32& value) const;

  /// \brief Find the text of an integer.
  /// \return whether the integer has one, which may be empty; here always false, and `text` is unchanged
  virtual bool toString(const ipUInt32& value, std::string& text) const;

  ipUInt32 getEnumValue() const { return _value; }      ///< the integer
  void setEnumValue(ipUInt32 value) { _value = value; } ///< any integer, also one without a text

private:
  ipUInt32 _value;
};

} // namespace orvel
