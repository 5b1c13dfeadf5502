#include <functional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "../StructuringElement/InfoTesting.h"
#include "ORVELBaseData/Pattern/Private/InfoOperations.h"
#include <ORVELSerialization/ORVELSerializationException.h>
#include <support/HandWrittenArchive.h>
#include <support/RaisedFailure.h>

// StructuringElementXYInfo and StructuringElementXYZInfo in archives of both formats.
namespace
{

using namespace orvel;
using namespace orvel::test;

template <class Format>
constexpr bool g_isXml = std::is_same<Format, HandWrittenXml>::value;

constexpr const char* g_kindTexts[][6] = {{"eSEXY_Generic", "eSEXY_Circular", "eSEXY_Square",
                                           "eSEXY_Rectangular", "eSEXY_HalfLinear", "eSEXY_Linear"},
                                          {"eSEXYZ_Generic", "eSEXYZ_Spherical", "eSEXYZ_Cubic",
                                           "eSEXYZ_Rectangular", "eSEXYZ_HalfLinear", "eSEXYZ_Linear"}};

/// Puts descriptions into archives by hand, in one of the formats.
template <class InfoAndFormat>
class ArchivedInfo : public ::testing::Test
{
protected:
  using Info = typename InfoAndFormat::first_type;
  using HandWritten = typename InfoAndFormat::second_type;
  using Traits = InfoTraits<Info>;
  using Element = typename Traits::Element;
  using Offsets = ElementTraits<Element>;

  static constexpr const char* kindKey = Traits::isPlanar ? "_seXYSubType" : "_seXYZSubType";
  static constexpr const char* elementKey = Traits::isPlanar ? "_pSEXY" : "_pSEXYZ";

  static ElementState origin() { return Offsets::stateOfOne(0, 0, 0); }
  static ElementState somewhere() { return Offsets::stateOfOne(7, 8, 9); }
  static ElementState stateOfFresh() { return {{0, 0, 0}, {0, 0, 0}, {}}; }
  static ElementState stateOfCube() { return stateOf(*makeCube<Info>().getStructuringElement()); }

  static std::string className() { return std::string("orvel::") + Traits::name; }
  static std::string elementClassName() { return std::string("orvel::") + Offsets::name; }

  static void putStart(HandWritten& archive, bool isInitialized, ipUInt32 baseVersion = 1,
                       ipUInt32 version = 1)
  {
    putVersion(archive, "orvel::BaseStructuringElementInfo", baseVersion);
    archive.boolean("_bInit", isInitialized);
    putVersion(archive, className(), version);
  }

  static void putKind(HandWritten& archive, std::size_t kind)
  {
    archive.enumeration(kindKey, static_cast<std::int64_t>(kind),
                        g_kindTexts[Traits::isPlanar ? 0 : 1][kind]);
  }

  /// An archive that holds the start of an initialised description.
  static HandWritten startOf(std::size_t kind)
  {
    HandWritten archive;
    putStart(archive, true);
    putKind(archive, kind);
    return archive;
  }

  static void openElement(HandWritten& archive)
  {
    archive.openSection(elementKey);
    archive.openSection("shared_ptr<" + elementClassName() + ">");
  }

  /// The first element of the archive.
  static void putElement(HandWritten& archive, const ElementState& element)
  {
    openElement(archive);
    archive.openPointer("pObject", elementClassName());
    putElementVersions<Element>(archive);
    putElementItems<Element>(archive, element);
    archive.close();
    archive.close();
    archive.close();
  }

  /// A disc or ball of radius 1.5 that has become another shape.
  static HandWritten changedBall(ipUInt32 baseVersion = 1, ipUInt32 version = 1)
  {
    HandWritten archive;
    putStart(archive, true, baseVersion, version);
    putKind(archive, 1);
    archive.real64("_radius", 1.5);
    putElement(archive, somewhere());
    return archive;
  }

  static HandWritten notInitialized(ipUInt32 baseVersion = 1, ipUInt32 version = 1)
  {
    HandWritten archive;
    putStart(archive, false, baseVersion, version);
    return archive;
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

  static std::string failureOfReading(const HandWritten& archive, Info& info, bool isUntrusted = false)
  {
    return messageOf<ORVELSerializationException>(
        [&]
        {
          readStart<HandWritten>(archive.file(),
                                 [&](BaseIArchive& input)
                                 {
                                   input.setUntrusted(isUntrusted);
                                   info.read(input);
                                 });
        });
  }

  /// The file of a description must be this one, and be read as an equal description.
  static void expectFile(const Info& info, const HandWritten& expected)
  {
    EXPECT_EQ(fileOfInfos({&info}), expected.file());
    Info read = makeCube<Info>();
    readInfo(expected.file(), read);
    EXPECT_EQ(stateOfInfo(read), stateOfInfo(info));
    EXPECT_EQ(fileOfInfos({&read}), expected.file()); // the parameters, too
  }

  /// The file of a shape must be its kind, these parameters and this element.
  template <class PutParameters>
  static void expectShape(const std::function<void(Info&)>& initialise, std::size_t kind,
                          PutParameters putParameters, const ElementState& element)
  {
    HandWritten expected = startOf(kind);
    putParameters(expected);
    putElement(expected, element);
    Info info;
    initialise(info);
    expectFile(info, expected);
  }
};

using InfosAndFormats = ::testing::Types<std::pair<StructuringElementXYInfo, HandWrittenXml>,
                                         std::pair<StructuringElementXYInfo, HandWrittenBinary>,
                                         std::pair<StructuringElementXYZInfo, HandWrittenXml>,
                                         std::pair<StructuringElementXYZInfo, HandWrittenBinary>>;

struct InfoAndFormatNames
{
  template <class InfoAndFormat>
  static std::string GetName(int)
  {
    return std::string(InfoTraits<typename InfoAndFormat::first_type>::name) +
           (g_isXml<typename InfoAndFormat::second_type> ? "Xml" : "Binary");
  }
};

TYPED_TEST_SUITE(ArchivedInfo, InfosAndFormats, InfoAndFormatNames);

TYPED_TEST(ArchivedInfo, HoldsOnlyVersionsAndInitWhenNotInitialised)
{
  this->expectFile(typename TestFixture::Info(), this->notInitialized());
  auto info = makeCube<typename TestFixture::Info>();
  EXPECT_ANY_THROW(TestFixture::Traits::initBall(info, -1));
  EXPECT_EQ(this->fileOfInfos({&info}), this->notInitialized().file());
}

TYPED_TEST(ArchivedInfo, HoldsAGenericShapeWithoutParameters)
{
  const auto initialise = [](auto& info)
  {
    typename TestFixture::Element element;
    element.insert(TestFixture::Offsets::at(7, 8, 9));
    info.init(element);
  };
  this->expectShape(
      initialise, 0, [](auto&) {}, this->somewhere());
}

TYPED_TEST(ArchivedInfo, HoldsAnElementInEitherEmptyState)
{
  this->expectShape([](auto& info) { info.initEmpty(); }, 0, [](auto&) {}, this->stateOfFresh());
  const auto initialise = [](auto& info)
  {
    info.initEmpty();
    TestFixture::Traits::insert(info, 1, 1, 1);
    TestFixture::Traits::remove(info, 1, 1, 1);
  };
  this->expectShape(
      initialise, 0, [](auto&) {}, TestFixture::Offsets::emptiedState());
}

TYPED_TEST(ArchivedInfo, HoldsADiscOrBallWithItsRadius)
{
  this->expectShape([](auto& info) { TestFixture::Traits::initBall(info, 0.5); }, 1,
                    [](auto& archive) { archive.real64("_radius", 0.5); }, this->origin());
}

TYPED_TEST(ArchivedInfo, HoldsASquareOrCubeWithItsHalfSize)
{
  // Empty, with the largest number for half size.
  this->expectShape([](auto& info) { TestFixture::Traits::initCube(info, 4294967295U); }, 2,
                    [](auto& archive) { archive.integer("_halfSize", 4294967295); },
                    TestFixture::Offsets::emptiedState());
}

TYPED_TEST(ArchivedInfo, HoldsABoxWithItsHalfSizes)
{
  this->expectShape([](auto& info) { TestFixture::Traits::initBox(info, 1, 4000000000U, 3); }, 3,
                    [](auto& archive)
                    {
                      archive.integer("_halfSizeX", 1);
                      archive.integer("_halfSizeY", 4000000000);
                      if (!TestFixture::Traits::isPlanar)
                        archive.integer("_halfSizeZ", 3);
                    },
                    TestFixture::Offsets::emptiedState());
}

TYPED_TEST(ArchivedInfo, HoldsSegmentsWithTheirAnglesAndRadius)
{
  const auto putParameters = [](auto& archive)
  {
    archive.real64("_theta", 0.5);
    if (!TestFixture::Traits::isPlanar)
      archive.real64("_phi", 1.25);
    archive.real64("_radius", 0.75);
  };
  this->expectShape([](auto& info) { TestFixture::Traits::initHalfLinear(info, 0.5, 1.25, 0.75); }, 4,
                    putParameters, this->origin());
  this->expectShape([](auto& info) { TestFixture::Traits::initLinear(info, 0.5, 1.25, 0.75); }, 5,
                    putParameters, this->origin());
}

TYPED_TEST(ArchivedInfo, HoldsACopiedSquareWithTheHalfSizeOfTheTargetAndACopiedCubeWithItsOwn)
{
  typename TestFixture::Info source;
  TestFixture::Traits::initCube(source, 3);
  typename TestFixture::Info target;
  TestFixture::Traits::initCube(target, 7);
  target = source;
  typename TestFixture::Info info;
  this->readInfo(this->fileOfInfos({&target}), info);
  EXPECT_EQ(info.getHalfSize(), TestFixture::Traits::isPlanar ? 7U : 3U);
  EXPECT_EQ(stateOfInfo(info), stateOfInfo(source));
}

TYPED_TEST(ArchivedInfo, TakesTheElementThatIsStoredInsteadOfMakingIt)
{
  auto info = makeCube<typename TestFixture::Info>();
  this->readInfo(this->changedBall().file(), info);
  EXPECT_EQ(stateOfInfo(info), (InfoState{true, 1, this->somewhere()}));
  EXPECT_EQ(info.getRadius(), 1.5);
}

TYPED_TEST(ArchivedInfo, KeepsAnAddedOffsetAndTheRadius)
{
  typename TestFixture::Info written;
  TestFixture::Traits::initBall(written, 1.5);
  TestFixture::Traits::insert(written, 5, 6, 7);
  typename TestFixture::Info info;
  this->readInfo(this->fileOfInfos({&written}), info);
  EXPECT_EQ(stateOfInfo(info), stateOfInfo(written));
  EXPECT_TRUE(info.getStructuringElement()->exists(TestFixture::Offsets::at(5, 6, 7)));
  EXPECT_EQ(info.getRadius(), 1.5);
}

TYPED_TEST(ArchivedInfo, LeavesHoldersTheOldElementWhenRead)
{
  auto info = makeCube<typename TestFixture::Info>();
  const auto held = info.getStructuringElement();
  this->readInfo(this->changedBall().file(), info);
  EXPECT_NE(info.getStructuringElement(), held);
  EXPECT_EQ(stateOf(*held), this->stateOfCube());
  EXPECT_EQ(held.use_count(), 1);
}

TYPED_TEST(ArchivedInfo, EmptiesTheElementOfHoldersWhenReadNotInitialised)
{
  auto info = makeCube<typename TestFixture::Info>();
  const auto held = info.getStructuringElement();
  this->readInfo(this->notInitialized().file(), info);
  EXPECT_FALSE(info.isInitialized());
  EXPECT_EQ(stateOf(*held), this->stateOfFresh());
  info.init(typename TestFixture::Element());
  EXPECT_EQ(info.getStructuringElement(), held); // still its own
}

TYPED_TEST(ArchivedInfo, LooksForNoFurtherItemsWhenNotInitialised)
{
  auto file = this->notInitialized();
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

TYPED_TEST(ArchivedInfo, SharesItsElementWithOthersOfItsArchive)
{
  const auto written = makeCube<typename TestFixture::Info>();
  const boost::shared_ptr<const typename TestFixture::Element> element = written.getStructuringElement();
  const std::string file = fileOf<typename TestFixture::HandWritten>(
      [&](BaseOArchive& archive)
      {
        archive << SerializationOItem("element", element);
        written.write(archive);
      });
  boost::shared_ptr<typename TestFixture::Element> other;
  typename TestFixture::Info info;
  readFile<typename TestFixture::HandWritten>(file,
                                              [&](BaseIArchive& archive)
                                              {
                                                archive >> SerializationIItem("element", other);
                                                info.read(archive);
                                              });
  EXPECT_EQ(info.getStructuringElement(), other);
}

// Failures

TYPED_TEST(ArchivedInfo, RefusesANullElement)
{
  auto file = this->startOf(1);
  file.real64("_radius", 2.5);
  this->openElement(file);
  file.nullPointer("pObject");
  file.close();
  file.close();
  auto info = makeCube<typename TestFixture::Info>();
  const auto held = info.getStructuringElement();
  const std::string message = this->failureOfReading(file, info);
  EXPECT_NE(
      message.find(std::string(": \"null\" is no valid value of item \"") + TestFixture::elementKey + "\""),
      std::string::npos)
      << message;

  // What came before it has been read; the element is the old one.
  EXPECT_EQ(stateOfInfo(info), (InfoState{true, 1, this->stateOfCube()}));
  EXPECT_EQ(info.getRadius(), 2.5);
  EXPECT_EQ(info.getStructuringElement(), held);
}

TYPED_TEST(ArchivedInfo, RefusesAnUnknownKind)
{
  typename TestFixture::HandWritten file;
  this->putStart(file, true);
  file.enumeration(TestFixture::kindKey, 6, "eSEXY_Triangular");
  auto info = makeCube<typename TestFixture::Info>();
  EXPECT_EQ(this->failureOfReading(file, info), g_isXml<typename TestFixture::HandWritten>
                                                    ? "Unknown enumeration text eSEXY_Triangular"
                                                    : "Unknown enumeration value 6");
  EXPECT_EQ(stateOfInfo(info), (InfoState{true, 2, this->stateOfCube()}));

  typename TestFixture::Info fresh;
  this->failureOfReading(file, fresh);
  EXPECT_TRUE(fresh.isInitialized()); // that came before it
  EXPECT_TRUE(fresh.getDataColl().empty());
}

TYPED_TEST(ArchivedInfo, RefusesAnObjectOfAnotherClassWhenUntrusted)
{
  auto file = this->startOf(0);
  this->openElement(file);
  file.openPointer("pObject", "orvel::OffsetXY");
  putVersion(file, "orvel::OffsetXY", 1);
  file.integer("_xOffset", 1);
  file.integer("_yOffset", 2);
  file.close();
  file.close();
  file.close();
  auto info = makeCube<typename TestFixture::Info>();
  const auto held = info.getStructuringElement();
  const std::string message = this->failureOfReading(file, info, true);
  EXPECT_NE(message.find(": an object of class orvel::OffsetXY can't stand for class " +
                         TestFixture::elementClassName()),
            std::string::npos)
      << message;
  EXPECT_EQ(info.getStructuringElement(), held);
}

TYPED_TEST(ArchivedInfo, KeepsItsShapeForANewerVersionOfEitherLevel)
{
  for (const bool isBaseNewer : {true, false})
  {
    auto info = makeCube<typename TestFixture::Info>();
    EXPECT_EQ(this->failureOfReading(this->changedBall(isBaseNewer ? 2 : 1, isBaseNewer ? 1 : 2), info),
              "Version 2 of class " +
                  (isBaseNewer ? "orvel::BaseStructuringElementInfo" : TestFixture::className()) +
                  " is not supported, the highest supported version is 1");
    EXPECT_EQ(stateOfInfo(info), (InfoState{true, 2, this->stateOfCube()}));
    EXPECT_EQ(info.getHalfSize(), 1U);
  }
}

TYPED_TEST(ArchivedInfo, TakesTheFlagAheadOfANewerVersionOfItsClassAlone)
{
  typename TestFixture::Info fresh;
  this->failureOfReading(this->changedBall(2, 1), fresh);
  EXPECT_FALSE(fresh.isInitialized()); // the version of the base comes before the flag
  this->failureOfReading(this->changedBall(1, 2), fresh);
  EXPECT_EQ(stateOfInfo(fresh), (InfoState{true, 0, this->stateOfFresh()}));

  auto cube = makeCube<typename TestFixture::Info>();
  const auto held = cube.getStructuringElement();
  this->failureOfReading(this->notInitialized(2, 1), cube);
  EXPECT_EQ(stateOfInfo(cube), (InfoState{true, 2, this->stateOfCube()}));
  this->failureOfReading(this->notInitialized(1, 2), cube);
  EXPECT_FALSE(cube.isInitialized());
  EXPECT_EQ(stateOf(*held), this->stateOfCube()); // not emptied
}

TYPED_TEST(ArchivedInfo, ReadsOldVersionsAlike)
{
  typename TestFixture::Info info;
  this->readInfo(this->changedBall(0, 0).file(), info);
  EXPECT_EQ(stateOfInfo(info), (InfoState{true, 1, this->somewhere()}));
}

TYPED_TEST(ArchivedInfo, HasAnElementWhereverItsArchiveEnds)
{
  // Cut behind the flag, the kind and the parameter in turn.
  for (int nbItems = 0; nbItems < 3; ++nbItems)
  {
    typename TestFixture::HandWritten file;
    this->putStart(file, true);
    if (nbItems > 0)
      this->putKind(file, 1);
    if (nbItems > 1)
      file.real64("_radius", 2.5);
    typename TestFixture::Info info;
    this->failureOfReading(file, info);
    ASSERT_TRUE(info.isInitialized());
    EXPECT_EQ(TestFixture::Traits::kindOf(info), nbItems > 0 ? 1U : 0U);
    if (nbItems > 0)
    {
      EXPECT_EQ(info.getRadius(), nbItems > 1 ? 2.5 : 0);
    }
    EXPECT_TRUE(info.getDataColl().empty());
    EXPECT_TRUE(TestFixture::Traits::insert(info, 1, 2, 3));
    info.clear();
    EXPECT_FALSE(info.isInitialized());
  }
}

} // namespace
