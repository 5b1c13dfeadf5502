#pragma once

/// \file
/// \brief What archives of both kinds of descriptions have to pass, in both formats.

#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include "InfoTesting.h"
#include <ORVELSerialization/ItemOperators.h>
#include <ORVELSerialization/ORVELSerializationException.h>
#include <support/HandWrittenArchive.h>
#include <support/RaisedFailure.h>

namespace orvel::test
{

/// \brief Puts descriptions into archives by hand, in one of the formats.
template <class InfoAndFormat>
class ArchivedInfo : public ::testing::Test
{
protected:
  using Info = typename InfoAndFormat::first_type;
  using HandWritten = typename InfoAndFormat::second_type;
  using Traits = InfoTraits<Info>;
  using Element = typename Traits::Element;

  static constexpr bool isPlanar = ElementTraits<Element>::nbAxes == 2;

  /// \param z is dropped in the plane
  static Coordinates place(ipInt32 x, ipInt32 y, ipInt32 z) { return {x, y, isPlanar ? 0 : z}; }
  static Sizes sizes(ipUInt32 x, ipUInt32 y, ipUInt32 z) { return {x, y, isPlanar ? 0U : z}; }
  static ElementState origin() { return {place(0, 0, 0), sizes(1, 1, 1), {place(0, 0, 0)}}; }
  static ElementState somewhere() { return {place(7, 8, 9), sizes(1, 1, 1), {place(7, 8, 9)}}; }

  static std::string className() { return std::string("orvel::") + Traits::name; }
  static std::string elementClassName() { return std::string("orvel::") + ElementTraits<Element>::name; }

  static void putStart(HandWritten& archive, bool isInitialized, ipUInt32 baseVersion = 1,
                       ipUInt32 version = 1)
  {
    putVersion(archive, "orvel::BaseStructuringElementInfo", baseVersion);
    archive.boolean("_bInit", isInitialized);
    putVersion(archive, className(), version);
  }

  static void putSubType(HandWritten& archive, std::size_t subType)
  {
    archive.enumeration(Traits::subTypeKey, static_cast<std::int64_t>(subType),
                        Traits::subTypeTexts[subType]);
  }

  static void openElement(HandWritten& archive)
  {
    archive.openSection(Traits::elementKey);
    archive.openSection("shared_ptr<" + elementClassName() + ">");
  }

  /// \param isFirst whether this is the first element of the archive
  static void putElement(HandWritten& archive, const ElementState& element, bool isFirst = true)
  {
    openElement(archive);
    archive.openPointer("pObject", elementClassName());
    if (isFirst)
      putElementVersions<Element>(archive);
    putElementItems<Element>(archive, element, isFirst);
    archive.close();
    archive.close();
    archive.close();
  }

  /// A disc or ball of radius 1.5 that has become another shape.
  static void putChangedBall(HandWritten& archive, bool isFirst = true)
  {
    putSubType(archive, 1);
    archive.real64("_radius", 1.5);
    putElement(archive, somewhere(), isFirst);
  }

  static void putSegmentParameters(HandWritten& archive)
  {
    archive.real64("_theta", 0.5);
    if (!isPlanar)
      archive.real64("_phi", 1.25);
    archive.real64("_radius", 0.75);
  }

  static Info makeCube()
  {
    Info info;
    Traits::initCube(info, 1);
    return info;
  }

  static std::string fileOfInfos(const std::vector<const Info*>& infos)
  {
    return fileOf<HandWritten>(
        [&](BaseOArchive& archive)
        {
          for (const Info* info : infos) // no copies: those of squares lack their half size
          {
            const BoolResult written = info->write(archive);
            EXPECT_TRUE(written);
            EXPECT_EQ(written.getMessage(), "");
          }
        });
  }

  static void readInfo(const std::string& file, Info& info)
  {
    readFile<HandWritten>(file,
                          [&](BaseIArchive& archive)
                          {
                            const BoolResult read = info.read(archive);
                            EXPECT_TRUE(read);
                            EXPECT_EQ(read.getMessage(), "");
                          });
  }

  static std::string failureOfReading(const std::string& file, Info& info, bool isUntrusted = false)
  {
    return messageOf<ORVELSerializationException>(
        [&]
        {
          readStart<HandWritten>(file,
                                 [&](BaseIArchive& archive)
                                 {
                                   archive.setUntrusted(isUntrusted);
                                   info.read(archive);
                                 });
        });
  }

  /// The file of a description must be this one, and be read as an equal description.
  static void expectFile(const Info& info, const HandWritten& expected)
  {
    EXPECT_EQ(fileOfInfos({&info}), expected.file());
    Info read = makeCube();
    readInfo(expected.file(), read);
    EXPECT_EQ(stateOfInfo(read), stateOfInfo(info));
    EXPECT_EQ(fileOfInfos({&read}), expected.file()); // the parameters, too
  }
};

TYPED_TEST_SUITE_P(ArchivedInfo);

TYPED_TEST_P(ArchivedInfo, HoldsOnlyVersionsAndInitWhenNotInitialised)
{
  typename TestFixture::HandWritten expected;
  this->putStart(expected, false);
  this->expectFile(typename TestFixture::Info(), expected);
}

TYPED_TEST_P(ArchivedInfo, HoldsOnlyVersionsAndInitAfterAFailedInitialisation)
{
  typename TestFixture::HandWritten expected;
  this->putStart(expected, false);
  auto info = this->makeCube();
  EXPECT_ANY_THROW(TestFixture::Traits::initBall(info, -1));
  EXPECT_EQ(this->fileOfInfos({&info}), expected.file());
}

TYPED_TEST_P(ArchivedInfo, HoldsAGenericShapeWithoutParameters)
{
  typename TestFixture::HandWritten expected;
  this->putStart(expected, true);
  this->putSubType(expected, 0);
  this->putElement(expected, this->somewhere());
  typename TestFixture::Element element;
  element.insert(ElementTraits<typename TestFixture::Element>::at(7, 8, 9));
  typename TestFixture::Info info;
  info.init(element);
  this->expectFile(info, expected);
}

TYPED_TEST_P(ArchivedInfo, HoldsAnElementInEitherEmptyState)
{
  typename TestFixture::Info info;
  info.initEmpty();
  typename TestFixture::HandWritten fresh;
  this->putStart(fresh, true);
  this->putSubType(fresh, 0);
  this->putElement(fresh, {{0, 0, 0}, {0, 0, 0}, {}});
  this->expectFile(info, fresh);

  TestFixture::Traits::insert(info, 1, 1, 1);
  TestFixture::Traits::remove(info, 1, 1, 1);
  typename TestFixture::HandWritten emptied;
  this->putStart(emptied, true);
  this->putSubType(emptied, 0);
  this->putElement(emptied, {this->place(g_highest, g_highest, g_highest), this->sizes(2, 2, 2), {}});
  this->expectFile(info, emptied);
}

TYPED_TEST_P(ArchivedInfo, HoldsADiscOrBallWithItsRadius)
{
  typename TestFixture::HandWritten expected;
  this->putStart(expected, true);
  this->putSubType(expected, 1);
  expected.real64("_radius", 0.5);
  this->putElement(expected, this->origin());
  typename TestFixture::Info info;
  TestFixture::Traits::initBall(info, 0.5);
  this->expectFile(info, expected);
}

TYPED_TEST_P(ArchivedInfo, HoldsASquareOrCubeWithItsHalfSize)
{
  // Empty, with the largest number for half size.
  typename TestFixture::HandWritten expected;
  this->putStart(expected, true);
  this->putSubType(expected, 2);
  expected.integer("_halfSize", 4294967295);
  this->putElement(expected, {this->place(g_highest, g_highest, g_highest), this->sizes(2, 2, 2), {}});
  typename TestFixture::Info info;
  TestFixture::Traits::initCube(info, 4294967295U);
  this->expectFile(info, expected);
}

TYPED_TEST_P(ArchivedInfo, HoldsABoxWithItsHalfSizes)
{
  typename TestFixture::HandWritten expected;
  this->putStart(expected, true);
  this->putSubType(expected, 3);
  expected.integer("_halfSizeX", 1);
  expected.integer("_halfSizeY", 4000000000);
  if (!TestFixture::isPlanar)
    expected.integer("_halfSizeZ", 3);
  this->putElement(expected, {this->place(g_highest, g_highest, g_highest), this->sizes(2, 2, 2), {}});
  typename TestFixture::Info info;
  TestFixture::Traits::initBox(info, 1, 4000000000U, 3);
  this->expectFile(info, expected);
}

TYPED_TEST_P(ArchivedInfo, HoldsSegmentsWithTheirAnglesAndRadius)
{
  for (const std::size_t subType : {4U, 5U})
  {
    typename TestFixture::HandWritten expected;
    this->putStart(expected, true);
    this->putSubType(expected, subType);
    this->putSegmentParameters(expected);
    this->putElement(expected, this->origin());
    typename TestFixture::Info info;
    if (subType == 4)
      TestFixture::Traits::initHalfLinear(info, 0.5, 1.25, 0.75);
    else
      TestFixture::Traits::initLinear(info, 0.5, 1.25, 0.75);
    this->expectFile(info, expected);
  }
}

TYPED_TEST_P(ArchivedInfo, TakesTheElementThatIsStoredInsteadOfMakingIt)
{
  typename TestFixture::HandWritten file;
  this->putStart(file, true);
  this->putChangedBall(file);
  auto info = this->makeCube();
  this->readInfo(file.file(), info);
  EXPECT_EQ(stateOfInfo(info), (InfoState{true, 1, this->somewhere()}));
  EXPECT_EQ(info.getRadius(), 1.5);
}

TYPED_TEST_P(ArchivedInfo, KeepsAnAddedOffsetAndTheRadius)
{
  typename TestFixture::Info written;
  TestFixture::Traits::initBall(written, 1.5);
  TestFixture::Traits::insert(written, 5, 6, 7);
  typename TestFixture::Info info;
  this->readInfo(this->fileOfInfos({&written}), info);
  EXPECT_EQ(stateOfInfo(info), stateOfInfo(written));
  EXPECT_TRUE(
      info.getStructuringElement()->exists(ElementTraits<typename TestFixture::Element>::at(5, 6, 7)));
  EXPECT_EQ(info.getRadius(), 1.5);
}

TYPED_TEST_P(ArchivedInfo, LeavesHoldersTheOldElementWhenRead)
{
  typename TestFixture::HandWritten file;
  this->putStart(file, true);
  this->putChangedBall(file);
  auto info = this->makeCube();
  const auto held = info.getStructuringElement();
  const ElementState before = stateOf(*held);
  this->readInfo(file.file(), info);
  EXPECT_NE(info.getStructuringElement(), held);
  EXPECT_EQ(stateOf(*held), before);
  EXPECT_EQ(held.use_count(), 1);
}

TYPED_TEST_P(ArchivedInfo, EmptiesTheElementOfHoldersWhenReadNotInitialised)
{
  typename TestFixture::HandWritten file;
  this->putStart(file, false);
  auto info = this->makeCube();
  const auto held = info.getStructuringElement();
  this->readInfo(file.file(), info);
  EXPECT_FALSE(info.isInitialized());
  EXPECT_EQ(stateOf(*held), stateOf(typename TestFixture::Element()));
  info.init(typename TestFixture::Element());
  EXPECT_EQ(info.getStructuringElement(), held); // still its own
}

TYPED_TEST_P(ArchivedInfo, LooksForNoFurtherItemsWhenNotInitialised)
{
  typename TestFixture::HandWritten file;
  this->putStart(file, false);
  file.integer("next", 77);
  readFile<typename TestFixture::HandWritten>(file.file(),
                                              [](BaseIArchive& archive)
                                              {
                                                typename TestFixture::Info info;
                                                EXPECT_TRUE(info.read(archive));
                                                int next = 0;
                                                archive >> SerializationIItem("next", next);
                                                EXPECT_EQ(next, 77);
                                              });
}

TYPED_TEST_P(ArchivedInfo, SharesItsElementWithOthersOfItsArchive)
{
  typename TestFixture::Info written = this->makeCube();
  const boost::shared_ptr<const typename TestFixture::Element> element = written.getStructuringElement();
  const std::string file = fileOf<typename TestFixture::HandWritten>(
      [&](BaseOArchive& archive)
      {
        archive << SerializationOItem("element", element);
        written.write(archive);
      });
  readFile<typename TestFixture::HandWritten>(file,
                                              [](BaseIArchive& archive)
                                              {
                                                boost::shared_ptr<typename TestFixture::Element> other;
                                                archive >> SerializationIItem("element", other);
                                                typename TestFixture::Info info;
                                                info.read(archive);
                                                EXPECT_EQ(info.getStructuringElement(), other);
                                              });
}

TYPED_TEST_P(ArchivedInfo, RefusesANullElement)
{
  typename TestFixture::HandWritten file;
  this->putStart(file, true);
  this->putSubType(file, 1);
  file.real64("_radius", 2.5);
  this->openElement(file);
  file.nullPointer("pObject");
  file.close();
  file.close();
  auto info = this->makeCube();
  const auto held = info.getStructuringElement();
  const std::string message = this->failureOfReading(file.file(), info);
  EXPECT_NE(message.find(std::string(": \"null\" is no valid value of item \"") +
                         TestFixture::Traits::elementKey + "\""),
            std::string::npos)
      << message;

  // What came before it has been read; the element is the old one.
  EXPECT_TRUE(info.isInitialized());
  EXPECT_EQ(TestFixture::Traits::subTypeOf(info), 1U);
  EXPECT_EQ(info.getRadius(), 2.5);
  EXPECT_EQ(info.getStructuringElement(), held);
  EXPECT_EQ(stateOf(*held), stateOf(*this->makeCube().getStructuringElement()));
}

TYPED_TEST_P(ArchivedInfo, RefusesAnUnknownKind)
{
  typename TestFixture::HandWritten file;
  this->putStart(file, true);
  file.enumeration(TestFixture::Traits::subTypeKey, 6, "eSEXY_Triangular");
  auto info = this->makeCube();
  const InfoState before = stateOfInfo(info);
  EXPECT_EQ(this->failureOfReading(file.file(), info),
            (std::is_same<typename TestFixture::HandWritten, HandWrittenXml>::value)
                ? "Unknown enumeration text eSEXY_Triangular"
                : "Unknown enumeration value 6");
  EXPECT_EQ(stateOfInfo(info), before);

  typename TestFixture::Info fresh;
  this->failureOfReading(file.file(), fresh);
  EXPECT_TRUE(fresh.isInitialized()); // that came before it
  EXPECT_TRUE(fresh.getDataColl().empty());
}

TYPED_TEST_P(ArchivedInfo, RefusesAnObjectOfAnotherClassWhenUntrusted)
{
  typename TestFixture::HandWritten file;
  this->putStart(file, true);
  this->putSubType(file, 0);
  this->openElement(file);
  file.openPointer("pObject", "orvel::OffsetXY");
  putVersion(file, "orvel::OffsetXY", 1);
  file.integer("_xOffset", 1);
  file.integer("_yOffset", 2);
  file.close();
  file.close();
  file.close();
  auto info = this->makeCube();
  const auto held = info.getStructuringElement();
  const std::string message = this->failureOfReading(file.file(), info, true);
  EXPECT_NE(message.find(": an object of class orvel::OffsetXY can't stand for class " +
                         TestFixture::elementClassName()),
            std::string::npos)
      << message;
  EXPECT_EQ(info.getStructuringElement(), held);
}

TYPED_TEST_P(ArchivedInfo, KeepsItsShapeForANewerVersionOfItsClass)
{
  typename TestFixture::HandWritten file;
  this->putStart(file, true, 1, 2);
  this->putChangedBall(file);
  auto info = this->makeCube();
  const InfoState before = stateOfInfo(info);
  EXPECT_EQ(this->failureOfReading(file.file(), info),
            "Version 2 of class " + TestFixture::className() +
                " is not supported, the highest supported version is 1");
  EXPECT_EQ(stateOfInfo(info), before);
}

TYPED_TEST_P(ArchivedInfo, TakesTheFlagAheadOfANewerVersionOfItsClass)
{
  typename TestFixture::HandWritten initialised;
  this->putStart(initialised, true, 1, 2);
  typename TestFixture::Info fresh;
  this->failureOfReading(initialised.file(), fresh);
  EXPECT_EQ(stateOfInfo(fresh), (InfoState{true, 0, stateOf(typename TestFixture::Element())}));

  typename TestFixture::HandWritten notInitialised;
  this->putStart(notInitialised, false, 1, 2);
  auto cube = this->makeCube();
  const auto held = cube.getStructuringElement();
  this->failureOfReading(notInitialised.file(), cube);
  EXPECT_FALSE(cube.isInitialized());
  EXPECT_EQ(stateOf(*held), stateOf(*this->makeCube().getStructuringElement())); // not emptied
}

TYPED_TEST_P(ArchivedInfo, ReadsOldVersionsAlike)
{
  typename TestFixture::HandWritten file;
  this->putStart(file, true, 0, 0);
  this->putChangedBall(file);
  typename TestFixture::Info info;
  this->readInfo(file.file(), info);
  EXPECT_EQ(stateOfInfo(info), (InfoState{true, 1, this->somewhere()}));
}

TYPED_TEST_P(ArchivedInfo, HasAnElementWhereverItsArchiveEnds)
{
  // Cut behind the flag, the kind and the parameter in turn.
  for (int nbItems = 0; nbItems < 3; ++nbItems)
  {
    typename TestFixture::HandWritten file;
    this->putStart(file, true);
    if (nbItems > 0)
      this->putSubType(file, 1);
    if (nbItems > 1)
      file.real64("_radius", 2.5);
    typename TestFixture::Info info;
    this->failureOfReading(file.file(), info);
    ASSERT_TRUE(info.isInitialized());
    EXPECT_TRUE(info.getDataColl().empty());
    EXPECT_TRUE(TestFixture::Traits::insert(info, 1, 2, 3));
    info.clear();
    EXPECT_FALSE(info.isInitialized());
  }
}

REGISTER_TYPED_TEST_SUITE_P(
    ArchivedInfo, HoldsOnlyVersionsAndInitWhenNotInitialised,
    HoldsOnlyVersionsAndInitAfterAFailedInitialisation, HoldsAGenericShapeWithoutParameters,
    HoldsAnElementInEitherEmptyState, HoldsADiscOrBallWithItsRadius, HoldsASquareOrCubeWithItsHalfSize,
    HoldsABoxWithItsHalfSizes, HoldsSegmentsWithTheirAnglesAndRadius,
    TakesTheElementThatIsStoredInsteadOfMakingIt, KeepsAnAddedOffsetAndTheRadius,
    LeavesHoldersTheOldElementWhenRead, EmptiesTheElementOfHoldersWhenReadNotInitialised,
    LooksForNoFurtherItemsWhenNotInitialised, SharesItsElementWithOthersOfItsArchive, RefusesANullElement,
    RefusesAnUnknownKind, RefusesAnObjectOfAnotherClassWhenUntrusted, KeepsItsShapeForANewerVersionOfItsClass,
    TakesTheFlagAheadOfANewerVersionOfItsClass, ReadsOldVersionsAlike, HasAnElementWhereverItsArchiveEnds);

} // namespace orvel::test
