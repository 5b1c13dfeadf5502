#pragma once

/// \file
/// \brief Root of the structuring elements.

#include <ORVELBaseData/ORVELBaseDataExport.h>
#include <ORVELBaseData/Pattern/StructuringElement/StructuringElementType.h>
#include <ORVELSerialization/SerializableClass.h>

namespace orvel
{

/// \brief Root of the structuring elements, the unweighted neighbourhoods of morphology.
///
/// It cannot be assigned, only copied by copy(), which trusts the class of its argument.
///
/// Archive version 1, without items. The order of the virtual operations is part of the binary interface.
class ORVELBASEDATA_EXPORT BaseStructuringElement : public BaseSerializationObject
{
  ORVEL_DECLARE_ABSTRACT_SERIALIZABLE(BaseStructuringElement)

public:
  ~BaseStructuringElement() override = 0;

  virtual eStructuringElementType getStructuringElementType() const = 0; ///< the space of the offsets

protected:
  BaseStructuringElement() = default;
};

} // namespace orvel
