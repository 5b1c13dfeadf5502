#pragma once

/// \file
/// \brief Root of the descriptions of structuring elements.

#include <ORVELBaseData/ORVELBaseDataExport.h>
#include <ORVELBaseData/Pattern/StructuringElement/StructuringElementType.h>
#include <ORVELSerialization/SerializableClass.h>

namespace orvel
{

/// \brief Root of the descriptions: a structuring element with the kind and the parameters of its shape.
///
/// A new description is not initialised: it answers isInitialized() and getStructuringElementType() only.
///
/// Archive version 1: the item "_bInit". The order of the virtual operations and of the fields is part of the
/// binary interface.
class ORVELBASEDATA_EXPORT BaseStructuringElementInfo : public BaseSerializationObject
{
  ORVEL_DECLARE_ABSTRACT_SERIALIZABLE_WITH_MEMBERS(BaseStructuringElementInfo)

public:
  ~BaseStructuringElementInfo() override = 0;

  virtual eStructuringElementType getStructuringElementType() const = 0; ///< the space of the offsets

  bool isInitialized() const { return _bInit; } ///< whether the description holds a shape

  /// \brief Make the description not initialised. Its element is emptied in place, so that those who share it
  /// see it empty.
  void clear();

protected:
  BaseStructuringElementInfo() = default;

  virtual void clearDerived() = 0; ///< \brief Empty what the derived class holds. Called by clear().

  void initBase(); ///< \brief Mark the description as initialised: the last step of every initialisation.

private:
  bool _bInit = false;
};

} // namespace orvel
