#pragma once

/// \file
/// \brief Index (z, c, t) of a plan in an image.

#include <boost/shared_ptr.hpp>

#include <ORVELBaseData/ORVELBaseDataExport.h>
#include <ORVELSerialization/SerializableClass.h>
#include <ORVELUtil/ScalarTypes.h>

namespace orvel
{

/// \brief Index of a plan in an image: its position along z (depth), c (channel) and t (time).
///
/// Unit: plans, counted from 0. A plain value: any three numbers are accepted. The order compares t first,
/// then c, then z, as unsigned numbers: a sorted walk runs through z fastest and t slowest.
///
/// Archive version 2: the items "_zPlanIdx", "_cPlanIdx" and "_tPlanIdx" of 64 bits. Version 1 held 32 bits
/// and is still read. A failed read keeps the numbers read so far; of version 1, none.
class ORVELBASEDATA_EXPORT PlanIndex : public BaseSerializationObject
{
  ORVEL_DECLARE_SERIALIZABLE(PlanIndex)

public:
  /// \brief Create an index whose numbers are not set: assign, copy or read it before they are used.
  PlanIndex() {} // not = default: PlanIndex() would then zero the numbers

  /// \brief Create the index of a plan. Beware: arguments begin with z, comparisons with t.
  PlanIndex(ipUInt64 z, ipUInt64 c, ipUInt64 t)
    : _zPlanIdx(z)
    , _cPlanIdx(c)
    , _tPlanIdx(t)
  {
  }

  ipUInt64 getZPlanIdx() const { return _zPlanIdx; } ///< index along z
  ipUInt64 getCPlanIdx() const { return _cPlanIdx; } ///< index along c
  ipUInt64 getTPlanIdx() const { return _tPlanIdx; } ///< index along t

  /// \brief Compare the three indices.
  bool operator==(const PlanIndex& other) const
  {
    return _zPlanIdx == other._zPlanIdx && _cPlanIdx == other._cPlanIdx && _tPlanIdx == other._tPlanIdx;
  }
  bool operator!=(const PlanIndex& other) const { return !(*this == other); } ///< not equal

  /// \brief Order by t, then by c, then by z. Inline: searches in maps of plans consist of it.
  bool operator<(const PlanIndex& other) const
  {
    if (_tPlanIdx != other._tPlanIdx)
      return _tPlanIdx < other._tPlanIdx;
    if (_cPlanIdx != other._cPlanIdx)
      return _cPlanIdx < other._cPlanIdx;
    return _zPlanIdx < other._zPlanIdx;
  }
  bool operator<=(const PlanIndex& other) const { return !(other < *this); } ///< \see operator<
  bool operator>(const PlanIndex& other) const { return other < *this; }     ///< \see operator<
  bool operator>=(const PlanIndex& other) const { return !(*this < other); } ///< \see operator<

private:
  void readVersion1(BaseIArchive& archive);

  ipUInt64 _zPlanIdx;
  ipUInt64 _cPlanIdx;
  ipUInt64 _tPlanIdx;
};

using PlanIndexPtr = boost::shared_ptr<PlanIndex>;            ///< shared index
using PlanIndexConstPtr = boost::shared_ptr<const PlanIndex>; ///< shared constant index

} // namespace orvel
