#pragma once

/// \file
/// \brief Kinds of buffers.

#include <ORVELBaseData/ORVELBaseDataExport.h>
#include <ORVELUtil/NamedEnumeration.h>

namespace orvel
{

/// \brief Kind of a buffer: whose memory its elements lie in, and in how many pieces. Counts from 1.
class ORVELBASEDATA_EXPORT eBufferType : public NamedEnumeration<eBufferType, 1>
{
public:
  enum domain
  {
    eBT_Own = 1,   ///< one block of its own: TOwnBuffer, TypedOwnBuffer
    eBT_Hybrid,    ///< one block, its own or not: HybridBuffer
    eBT_External,  ///< one block of somebody else's: ExternalBuffer
    eBT_FragHybrid ///< fragments, its own or not: FragHybridBuffer
  };

  using NamedEnumeration::NamedEnumeration;
  static const char* findText(ipUInt32 value); ///< \see NamedEnumeration
};

} // namespace orvel
