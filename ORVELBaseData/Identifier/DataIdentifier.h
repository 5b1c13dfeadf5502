#pragma once

/// \file
/// \brief Globally unique identifier with a name.

#include <string>

#include <boost/shared_ptr.hpp>

#include <ORVELBaseData/ORVELBaseDataExport.h>
#include <ORVELSerialization/SerializableClass.h>
#include <ORVELSerialization/SerializationObjectWithGuid.h>

namespace orvel
{

/// \brief Globally unique identifier of data, with a name for people. It is not a BaseIdentifier.
///
/// A copy has the identifier of its source. Archive version 1: the items of SerializationObjectWithGuid, then
/// "_name". If what follows the identifier cannot be read, or the name cannot be copied, the object has the
/// new identifier and the old name.
class ORVELBASEDATA_EXPORT DataIdentifier : public SerializationObjectWithGuid
{
  ORVEL_DECLARE_SERIALIZABLE(DataIdentifier)

public:
  DataIdentifier(); ///< a new random identifier, without a name

  void setName(const std::string& name) { _name = name; }
  const std::string& getName() const { return _name; } ///< valid until the identifier changes

private:
  std::string _name;
};

using DataIdentifierPtr = boost::shared_ptr<DataIdentifier>;            ///< shared identifier
using DataIdentifierConstPtr = boost::shared_ptr<const DataIdentifier>; ///< shared constant identifier

} // namespace orvel
