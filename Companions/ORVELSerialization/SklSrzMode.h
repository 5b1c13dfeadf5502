#pragma once

/// \file
/// \brief How much of an object a `write` or `read` moves.

#include <ORVELSerialization/ORVELSerializationExport.h>
#include <ORVELUtil/NamedEnumeration.h>

namespace orvel
{

/// \brief How much of an object a `write` or `read` moves.
///
/// A tree of large objects can be stored first as bare structure and filled with data by a later pass.
class ORVELSERIALIZATION_EXPORT eSklSrzMode : public NamedEnumeration<eSklSrzMode>
{
public:
  enum domain
  {
    eSSM_Full,     ///< structure and data; a value that is not an enumerator is treated as this one
    eSSM_Skeleton, ///< structure only: enough to recreate the object empty, with its memory allocated
    eSSM_Data      ///< data only: the object must already have the structure
  };

  using NamedEnumeration::NamedEnumeration;
  static const char* findText(ipUInt32 value); ///< \see NamedEnumeration
};

} // namespace orvel
