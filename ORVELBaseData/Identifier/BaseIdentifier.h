#pragma once

/// \file
/// \brief Root of the identifiers.

#include <boost/shared_ptr.hpp>

#include <ORVELBaseData/ORVELBaseDataExport.h>
#include <ORVELSerialization/SerializableClass.h>

namespace orvel
{

/// \brief Root of the identifiers that are values: one number, two numbers or a string.
///
/// Identifiers have no comparison and no order: compare their values. Archive version 1, without items.
class ORVELBASEDATA_EXPORT BaseIdentifier : public BaseSerializationObject
{
  ORVEL_DECLARE_ABSTRACT_SERIALIZABLE(BaseIdentifier)

public:
  ~BaseIdentifier() override = 0;

protected:
  BaseIdentifier() = default;
};

using IdentifierPtr = boost::shared_ptr<BaseIdentifier>;            ///< shared identifier
using IdentifierConstPtr = boost::shared_ptr<const BaseIdentifier>; ///< shared constant identifier

} // namespace orvel
