#pragma once

/// \file
/// \brief Copies, mirrors and fills runs of elements at raw addresses.
///
/// Each operation has a form for an element type T known to the compiler, one of the eleven of eDataType, and
/// a form that takes the type at run time. Sizes are in elements unless the name says bytes. Addresses need
/// no alignment. Without elements nothing is touched, and null pointers are accepted. Nothing is allocated.
///
/// The vector instructions of the processor are found at run time; the results do not depend on them.

#include <type_traits>

#include <ORVELBaseData/Buffer/ElementTypes.h>
#include <ORVELBaseData/ORVELBaseDataExport.h>
#include <ORVELSerialization/DataType.h>
#include <ORVELUtil/ScalarTypes.h>

namespace orvel
{

/// \brief Return the size of one element in bytes; 0 for eDT_None and for a value that is not an enumerator,
/// of which all 64 bits count.
ORVELBASEDATA_EXPORT ipUInt32 getBufferBaseSize(const eDataType& dataType);

/// \brief Copy bytes, as memcpy does: the ranges must not overlap.
ORVELBASEDATA_EXPORT void copyBuffer(void* dst, ipUInt64 sizeInBytes, const void* src);

/// \brief Copy elements. The ranges must not overlap.
///
/// If dataType is not an enumerator its elements have 0 bytes: nothing is copied. The size in bytes wraps
/// around at 64 bits.
/// \throw ORVELBaseDataException (eInvalidBufferType) if dataType is eDT_None, also without elements; dst is
/// untouched
ORVELBASEDATA_EXPORT void copyBuffer(void* dst, const eDataType& dataType, ipUInt64 nbElements,
                                     const void* src);

/// \brief Copy elements in reverse order: element i of src becomes element nbElements - 1 - i of dst.
///
/// Copies element by element from i = 0 upward, without a temporary. Where the ranges overlap an element may
/// be read after it has been overwritten, so nothing is reversed in place: 1, 2, 3, 4 onto itself gives 1, 2,
/// 2, 1. Disjoint ranges take a fast path.
/// \throw ORVELBaseDataException (eInvalidBufferType) if dataType is eDT_None or not an enumerator; dst is
/// untouched
ORVELBASEDATA_EXPORT void copyBufferMiror(void* dst, const eDataType& dataType, ipUInt64 nbElements,
                                          const void* src);

/// \brief Set all elements to a value, converted to their type.
///
/// | dataType | conversion |
/// |---|---|
/// | eDT_Bool | whether the value differs from 0; true for NaN |
/// | eDT_Int8, eDT_UInt8, eDT_Int16, eDT_UInt16 | truncated to 32 bits signed, then the low bits |
/// | eDT_Int32 | truncated to 32 bits signed |
/// | eDT_UInt32 | truncated to 64 bits signed, then the low 32 bits |
/// | eDT_Int64 | truncated to 64 bits signed |
/// | eDT_UInt64 | below 2^63 as eDT_Int64; else value - 2^63 truncated to 64 bits signed, with the top bit
/// inverted |
/// | eDT_Real32 | rounded in the current rounding mode |
/// | eDT_Real64 | unchanged |
///
/// Values are truncated toward 0. A NaN and a value that the signed number cannot hold give its lowest one,
/// -2^31 or -2^63, as the truncating instructions of 64-bit x86 processors do, on every processor. Nothing
/// saturates: 300 gives 44 for eDT_UInt8, and -1 gives 65535 for eDT_UInt16.
/// \throw ORVELBaseDataException (eInvalidBufferType) if dataType is eDT_None or not an enumerator; dst is
/// untouched
ORVELBASEDATA_EXPORT void setBufferValues(ipReal64 value, const eDataType& dataType, ipUInt64 nbElements,
                                          void* dst);

namespace details
{

/// \brief copyBufferMiror() for elements of 1, 2, 4 or 8 bytes.
ORVELBASEDATA_EXPORT void mirrorElements(void* dst, ipUInt64 elementSizeInBytes, ipUInt64 nbElements,
                                         const void* src);

/// \brief setBufferValues() for elements of 1, 2, 4 or 8 bytes that all become a copy of *value.
ORVELBASEDATA_EXPORT void fillElements(const void* value, ipUInt64 elementSizeInBytes, ipUInt64 nbElements,
                                       void* dst);

} // namespace details

/// \brief Copy elements of a known type. The ranges must not overlap.
///
/// Beware: pointers to any other type, such as `char*` and `long long*`, take the form that counts bytes.
template <class T, std::enable_if_t<isElementType<T>, int> = 0>
void copyBuffer(T* dst, ipUInt64 nbElements, const T* src)
{
  copyBuffer(dst, ElementType<T>::dataType, nbElements, src);
}

/// \brief Copy elements of a known type in reverse order; overlapping ranges as above.
template <class T>
void copyBufferMiror(T* dst, ipUInt64 nbElements, const T* src)
{
  static_assert(ElementType<T>::dataType != eDataType::eDT_None);
  details::mirrorElements(dst, sizeof(T), nbElements, src);
}

/// \brief Set all elements to a value of their own type, keeping every bit of it.
template <class T>
void setBufferValues(T value, ipUInt64 nbElements, T* dst)
{
  static_assert(ElementType<T>::dataType != eDataType::eDT_None);
  details::fillElements(&value, sizeof(T), nbElements, dst);
}

} // namespace orvel
