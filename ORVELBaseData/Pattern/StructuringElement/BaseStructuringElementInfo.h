#pragma once

/// \file
/// \brief Root of the descriptions of structuring elements.

#include <ORVELBaseData/ORVELBaseDataExport.h>
#include <ORVELBaseData/Pattern/StructuringElement/StructuringElementType.h>
#include <ORVELSerialization/SerializableClass.h>

namespace orvel
{

/// \brief Root of the descriptions: a structuring element with the recipe that made it.
///
/// A description is born not initialised and then answers no question but isInitialized().
///
/// Archive version 1: the item "_bInit". The order of the virtual operations and of the fields is part of the
/// binary interface.
class ORVELBASEDATA_EXPORT BaseStructuringElementInfo : public BaseSerializationObject
{
  ORVEL_DECLARE_ABSTRACT_SERIALIZABLE_WITH_MEMBERS(BaseStructuringElementInfo)

public:
  ~BaseStructuringElementInfo() override = 0;

  virtual eStructuringElementType getStructuringElementType() const = 0; ///< the space of the offsets

protected:
  virtual void clearDerived() = 0; ///< \brief Empty what the derived class holds. Called by clear().

public:
  bool isInitialized() const { return _bInit; } ///< whether the description holds a shape

  /// \brief Take the description back to not initialised; its element is emptied in place, so that whoever
  /// shares it sees it empty.
  void clear();

protected:
  BaseStructuringElementInfo() = default;

  void initBase(); ///< \brief Mark the description initialised: the last step of every initialisation.

private:
  bool _bInit = false;
};

} // namespace orvel
