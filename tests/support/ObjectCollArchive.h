#pragma once

/// \file
/// \brief How archives of collections of SkeletonElements are put together by hand, written and read.

#include <string>

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include <ORVELSerialization/BaseObjectWithSkeleton.h>
#include <ORVELSerialization/ORVELSerializationException.h>
#include <support/ClassList.h>
#include <support/HandWrittenArchive.h>
#include <support/SkeletonElement.h>

namespace orvel::test
{

inline constexpr auto g_full = eSklSrzMode::eSSM_Full;
inline constexpr auto g_skeleton = eSklSrzMode::eSSM_Skeleton;
inline constexpr auto g_data = eSklSrzMode::eSSM_Data;

inline SkeletonElementPtr makeElement(ipInt32 structure = 0, ipInt32 data = 0)
{
  return boost::make_shared<SkeletonElement>(structure, data);
}

template <class HandWritten>
class ObjectCollArchive : public testing::Test
{
protected:
  static void openValue(HandWritten& archive)
  {
    archive.openSection("value");
    archive.openSection("shared_ptr<orvel::BaseSerializationObject>");
  }

  static void closeValue(HandWritten& archive)
  {
    archive.close();
    archive.close();
  }

  static void putNull(HandWritten& archive)
  {
    openValue(archive);
    archive.nullPointer("pObject");
    closeValue(archive);
  }

  /// An element that stands here for the first time; the first of all brings the version of its class.
  static void putElement(HandWritten& archive, bool isFirst, eSklSrzMode::domain mode, int structure,
                         int data)
  {
    openValue(archive);
    archive.openPointer("pObject", "orvel::SkeletonElement");
    putContent(archive, isFirst, mode, structure, data);
    archive.close();
    closeValue(archive);
  }

  /// An object of a class without a skeleton, and the version of its class.
  static void putPlainObject(HandWritten& archive)
  {
    openValue(archive);
    archive.openPointer("pObject", "orvel::ElementsRange");
    putVersion(archive, "orvel::ElementsRange", versionOf("orvel::ElementsRange"));
    archive.integer("_startOffset", 3);
    archive.integer("_nbElements", 4);
    archive.close();
    closeValue(archive);
  }

  /// An object that cannot be made.
  static void putUnknownObject(HandWritten& archive)
  {
    openValue(archive);
    archive.openPointer("pObject", "orvel::UnknownClass");
    archive.close();
    closeValue(archive);
  }

  /// The data of an element in place.
  static void putCurObject(HandWritten& archive, bool isFirst, int data)
  {
    archive.openObject("curObject");
    putContent(archive, isFirst, g_data, 0, data);
    archive.close();
  }

  static std::string write(const BaseObjectWithSkeleton& coll)
  {
    return fileOf<HandWritten>(
        [&](BaseOArchive& archive)
        {
          const BoolResult result = coll.write(archive);
          EXPECT_TRUE(result);
          EXPECT_EQ(result.getMessage(), "");
        });
  }

  static void read(BaseObjectWithSkeleton& coll, const std::string& file)
  {
    readFile<HandWritten>(file,
                          [&](BaseIArchive& archive)
                          {
                            const BoolResult result = coll.read(archive);
                            EXPECT_TRUE(result);
                            EXPECT_EQ(result.getMessage(), "");
                          });
  }

  static void readUntrusted(BaseObjectWithSkeleton& coll, const std::string& file)
  {
    readStart<HandWritten>(file,
                           [&](BaseIArchive& archive)
                           {
                             archive.setUntrusted(true);
                             coll.read(archive);
                           });
  }

  static void expectRefused(BaseObjectWithSkeleton& coll, const std::string& file)
  {
    EXPECT_THROW(readStart<HandWritten>(file, [&](BaseIArchive& archive) { coll.read(archive); }),
                 ORVELSerializationException);
  }

private:
  static void putContent(HandWritten& archive, bool isFirst, eSklSrzMode::domain mode, int structure,
                         int data)
  {
    if (isFirst)
      putVersion(archive, "orvel::SkeletonElement", 1);
    if (mode != g_data)
      archive.integer("_structure", structure);
    if (mode != g_skeleton)
      archive.integer("_data", data);
  }
};

} // namespace orvel::test
