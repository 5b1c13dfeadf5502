#pragma once

/// \file
/// \brief Kinds of buffers.

#include <ORVELBaseData/ORVELBaseDataExport.h>
#include <ORVELUtil/NamedEnumeration.h>

namespace orvel
{

/// \brief Kind of a buffer: who owns its memory, and whether it lies in one block or in fragments.
class ORVELBASEDATA_EXPORT eBufferType : public NamedEnumeration<eBufferType, 1>
{
public:
  enum domain
  {
    eBT_Own = 1,   ///< one owned block: TOwnBuffer, TypedOwnBuffer
    eBT_Hybrid,    ///< one block, owned or external: HybridBuffer
    eBT_External,  ///< one external block: ExternalBuffer
    eBT_FragHybrid ///< fragments, owned or external: FragHybridBuffer
  };

  using NamedEnumeration::NamedEnumeration;
  static const char* findText(ipUInt32 value); ///< \see NamedEnumeration
};

} // namespace orvel
