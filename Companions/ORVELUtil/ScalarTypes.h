#pragma once

/// \file
/// \brief Scalar types of the kit: fixed widths under one set of names.
///
/// Streams print the 8-bit types as characters. `long long` is not among them and has no item form in
/// archives.

#include <vector>

/// \brief The ORVEL kit.
namespace orvel
{

using ipBool = bool;             ///< one byte
using ipInt8 = signed char;      ///< 8-bit signed
using ipUInt8 = unsigned char;   ///< 8-bit unsigned
using ipInt16 = short;           ///< 16-bit signed
using ipUInt16 = unsigned short; ///< 16-bit unsigned
using ipInt32 = int;             ///< 32-bit signed
using ipUInt32 = unsigned int;   ///< 32-bit unsigned
using ipInt64 = long;            ///< 64-bit signed
using ipUInt64 = unsigned long;  ///< 64-bit unsigned
using ipReal32 = float;          ///< IEEE 754 single
using ipReal64 = double;         ///< IEEE 754 double

static_assert(sizeof(ipBool) == 1 && sizeof(ipInt16) == 2 && sizeof(ipInt32) == 4 && sizeof(ipInt64) == 8 &&
                  sizeof(void*) == 8,
              "the kit needs the 64-bit Linux data model");

using ipBoolPtr = ipBool*;
using ipBoolConstPtr = const ipBool*;
using ipInt8Ptr = ipInt8*;
using ipInt8ConstPtr = const ipInt8*;
using ipUInt8Ptr = ipUInt8*;
using ipUInt8ConstPtr = const ipUInt8*;
using ipInt16Ptr = ipInt16*;
using ipInt16ConstPtr = const ipInt16*;
using ipUInt16Ptr = ipUInt16*;
using ipUInt16ConstPtr = const ipUInt16*;
using ipInt32Ptr = ipInt32*;
using ipInt32ConstPtr = const ipInt32*;
using ipUInt32Ptr = ipUInt32*;
using ipUInt32ConstPtr = const ipUInt32*;
using ipInt64Ptr = ipInt64*;
using ipInt64ConstPtr = const ipInt64*;
using ipUInt64Ptr = ipUInt64*;
using ipUInt64ConstPtr = const ipUInt64*;
using ipReal32Ptr = ipReal32*;
using ipReal32ConstPtr = const ipReal32*;
using ipReal64Ptr = ipReal64*;
using ipReal64ConstPtr = const ipReal64*;

using Real32Vector = std::vector<ipReal32>; ///< a list of coefficients

} // namespace orvel
