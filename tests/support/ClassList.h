#pragma once

/// \file
/// \brief The classes of the libraries with their versions: the one list of them in the tests.

#include <string_view>

namespace orvel::test
{

/// \brief A class as archives name it.
struct ClassRow
{
  const char* name;
  unsigned int version; ///< 0: it stores no version
};

/// \brief What the factory creates by name.
inline constexpr ClassRow g_classes[] = {
    {"orvel::BaseDataItemEnumLeaf", 1},
    {"orvel::BaseDataItemNodeColl", 1},
    {"orvel::DataIdentifier", 1},
    {"orvel::DataItemLeaf<boost::filesystem::path>", 1},
    {"orvel::DataItemLeaf<ipBool>", 1},
    {"orvel::DataItemLeaf<ipInt16>", 1},
    {"orvel::DataItemLeaf<ipInt32>", 1},
    {"orvel::DataItemLeaf<ipInt64>", 1},
    {"orvel::DataItemLeaf<ipInt8>", 1},
    {"orvel::DataItemLeaf<ipReal32>", 1},
    {"orvel::DataItemLeaf<ipReal64>", 1},
    {"orvel::DataItemLeaf<ipUInt16>", 1},
    {"orvel::DataItemLeaf<ipUInt32>", 1},
    {"orvel::DataItemLeaf<ipUInt64>", 1},
    {"orvel::DataItemLeaf<ipUInt8>", 1},
    {"orvel::DataItemLeaf<std::string>", 1},
    {"orvel::DataItemLeafColl<boost::filesystem::path>", 1},
    {"orvel::DataItemLeafColl<ipBool>", 1},
    {"orvel::DataItemLeafColl<ipInt16>", 1},
    {"orvel::DataItemLeafColl<ipInt32>", 1},
    {"orvel::DataItemLeafColl<ipInt64>", 1},
    {"orvel::DataItemLeafColl<ipInt8>", 1},
    {"orvel::DataItemLeafColl<ipReal32>", 1},
    {"orvel::DataItemLeafColl<ipReal64>", 1},
    {"orvel::DataItemLeafColl<ipUInt16>", 1},
    {"orvel::DataItemLeafColl<ipUInt32>", 1},
    {"orvel::DataItemLeafColl<ipUInt64>", 1},
    {"orvel::DataItemLeafColl<ipUInt8>", 1},
    {"orvel::DataItemLeafColl<std::string>", 1},
    {"orvel::DataItemMap", 1},
    {"orvel::DoubleIdentifier", 1},
    {"orvel::ElementsRange", 2},
    {"orvel::ExternalBuffer", 0},
    {"orvel::FragHybridBuffer", 1},
    {"orvel::GeometricCalibration", 2},
    {"orvel::HybridBuffer", 1},
    {"orvel::KernelXY", 2},
    {"orvel::KernelXYZ", 2},
    {"orvel::OffsetXY", 1},
    {"orvel::OffsetXYZ", 1},
    {"orvel::PlanIndex", 2},
    {"orvel::SingleIdentifier", 1},
    {"orvel::StringIdentifier", 1},
    {"orvel::StructuringElementXY", 1},
    {"orvel::StructuringElementXYInfo", 1},
    {"orvel::StructuringElementXYZ", 1},
    {"orvel::StructuringElementXYZInfo", 1},
    {"orvel::TOwnBuffer<orvel::ipBool>", 1},
    {"orvel::TOwnBuffer<orvel::ipInt16>", 1},
    {"orvel::TOwnBuffer<orvel::ipInt32>", 1},
    {"orvel::TOwnBuffer<orvel::ipInt64>", 1},
    {"orvel::TOwnBuffer<orvel::ipInt8>", 1},
    {"orvel::TOwnBuffer<orvel::ipReal32>", 1},
    {"orvel::TOwnBuffer<orvel::ipReal64>", 1},
    {"orvel::TOwnBuffer<orvel::ipUInt16>", 1},
    {"orvel::TOwnBuffer<orvel::ipUInt32>", 1},
    {"orvel::TOwnBuffer<orvel::ipUInt64>", 1},
    {"orvel::TOwnBuffer<orvel::ipUInt8>", 1},
    {"orvel::TypedOwnBuffer", 1},
};

/// \brief The bases that store a version of their own ahead of those.
inline constexpr ClassRow g_baseClasses[] = {
    {"orvel::BaseDataItem", 1},
    {"orvel::BaseDataItemLeaf", 1},
    {"orvel::BaseDataItemLeafColl", 1},
    {"orvel::BaseDataItemNode", 1},
    {"orvel::BaseIdentifier", 1},
    {"orvel::BaseKernel", 1},
    {"orvel::BaseOwnBuffer", 1},
    {"orvel::BasePlanIndexedColl", 1},
    {"orvel::BasePtrColl", 1},
    {"orvel::BaseStructuringElement", 1},
    {"orvel::BaseStructuringElementInfo", 1},
};

/// \brief Return the version of a class of the lists above, 0 for any other.
constexpr unsigned int versionOf(std::string_view className)
{
  for (const ClassRow& row : g_classes)
    if (row.name == className)
      return row.version;
  for (const ClassRow& row : g_baseClasses)
    if (row.name == className)
      return row.version;
  return 0;
}

} // namespace orvel::test
