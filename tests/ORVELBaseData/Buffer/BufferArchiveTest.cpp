// What archives hold of the buffers that own their memory, or may, and how these are read.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "BufferSubjects.h"
#include "BufferTesting.h"
#include <ORVELSerialization/ORVELSerializationException.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

constexpr ipUInt64 g_largest = std::numeric_limits<ipUInt64>::max();
constexpr std::int64_t g_one = 1;

constexpr auto g_full = eSklSrzMode::eSSM_Full;
constexpr auto g_skeleton = eSklSrzMode::eSSM_Skeleton;
constexpr auto g_data = eSklSrzMode::eSSM_Data;

template <class SubjectOfCase, class FormatOfCase>
struct Case
{
  using Subject = SubjectOfCase;
  using Format = FormatOfCase;
};

template <class T>
class BufferArchive : public testing::Test
{
protected:
  using SubjectOfTest = typename T::Subject;
  using FormatOfTest = typename T::Format;
  using BufferOfTest = typename SubjectOfTest::Buffer;

  /// An archive that begins with the version record.
  static FormatOfTest begin(ipUInt32 version = 1)
  {
    FormatOfTest archive;
    putVersion(archive, SubjectOfTest::className, version);
    return archive;
  }

  static FormatOfTest structureOf(std::int64_t size, std::int64_t type, const std::string& typeName,
                                  ipUInt32 version = 1)
  {
    FormatOfTest archive = begin(version);
    archive.boolean("bInit", true);
    SubjectOfTest::putStructure(archive, size, type, typeName);
    return archive;
  }

  static FormatOfTest notInitialised()
  {
    FormatOfTest archive = begin();
    archive.boolean("bInit", false);
    return archive;
  }

  /// The six bytes "abcdef" of three elements.
  static FormatOfTest skeleton() { return structureOf(3, 5, "eDT_UInt16"); }
  static FormatOfTest full() { return withBlocks(skeleton()); }
  static FormatOfTest data() { return withBlocks(begin()); }

  static FormatOfTest withBlocks(FormatOfTest archive, const std::string& bytes = "abcdef",
                                 std::size_t elementSize = 2)
  {
    SubjectOfTest::putBlocks(archive, bytes, elementSize);
    return archive;
  }

  /// The file of an archive that holds all of one buffer.
  static std::string fileOf(FormatOfTest archive, ipUInt32 version = 1)
  {
    SubjectOfTest::putEnd(archive, version);
    return archive.file();
  }

  static void read(BufferOfTest& buffer, const FormatOfTest& archive, const eSklSrzMode& mode)
  {
    readInMode<FormatOfTest>(buffer, fileOf(archive), mode);
  }

  /// Reads from an archive that may hold more, or less.
  static void tryRead(BufferOfTest& buffer, const FormatOfTest& archive, const eSklSrzMode& mode)
  {
    buffer.setSerializationMode(mode);
    readStart<FormatOfTest>(archive.file(), [&](BaseIArchive& input) { buffer.read(input); });
  }

  static std::string failureOfRead(BufferOfTest& buffer, const FormatOfTest& archive, const eSklSrzMode& mode)
  {
    return messageOf<ORVELSerializationException>([&] { tryRead(buffer, archive, mode); });
  }

  /// Calls refuse(buffer) for a new buffer, an owner and a view, and checks that it changes nothing.
  template <class Refuse>
  static void expectUnchanged(Refuse refuse)
  {
    BufferOfTest fresh;
    refuse(fresh);
    expectCleared<SubjectOfTest>(fresh);
    forOwnerAndView<SubjectOfTest>(
        [&](BufferOfTest& buffer)
        {
          const std::string bytes = bytesIn<SubjectOfTest>(buffer);
          const auto fragments = SubjectOfTest::fragmentsOf(buffer);
          const char* const block = blockOf(buffer);
          refuse(buffer);
          EXPECT_EQ(blockOf(buffer), block);
          EXPECT_EQ(SubjectOfTest::fragmentsOf(buffer), fragments);
          expectSixBytes<SubjectOfTest>(buffer, bytes);
        });
  }
};

using Cases = testing::Types<Case<OwnSubject, HandWrittenXml>, Case<OwnSubject, HandWrittenBinary>,
                             Case<HybridSubject, HandWrittenXml>, Case<HybridSubject, HandWrittenBinary>,
                             Case<FragSubject, HandWrittenXml>, Case<FragSubject, HandWrittenBinary>>;
TYPED_TEST_SUITE(BufferArchive, Cases, );

// Writing

TYPED_TEST(BufferArchive, HoldsStructureAndElementsOfAnOwnerAndAViewAlike)
{
  using Subject = typename TypeParam::Subject;
  using Format = typename TypeParam::Format;
  forOwnerAndView<Subject>(
      [](const typename Subject::Buffer& buffer)
      {
        const std::string bytes = bytesIn<Subject>(buffer);
        EXPECT_EQ(fileOfMode<Format>(buffer, g_full),
                  TestFixture::fileOf(TestFixture::withBlocks(TestFixture::skeleton(), bytes)));
        EXPECT_EQ(fileOfMode<Format>(buffer, g_skeleton), TestFixture::fileOf(TestFixture::skeleton()));
        EXPECT_EQ(fileOfMode<Format>(buffer, g_data),
                  TestFixture::fileOf(TestFixture::withBlocks(TestFixture::begin(), bytes)));
        expectSixBytes<Subject>(buffer, bytes);
      });
}

TYPED_TEST(BufferArchive, TakesAnyOtherModeForBoth)
{
  using Subject = typename TypeParam::Subject;
  typename Subject::Buffer buffer;
  ownSixBytes<Subject>(buffer);
  for (const ipUInt64 value : {ipUInt64{3}, ipUInt64{0x100000001}, ipUInt64{0x100000002}})
  {
    const eSklSrzMode mode(value);
    EXPECT_EQ(fileOfMode<typename TypeParam::Format>(buffer, mode), this->fileOf(this->full()));
    typename Subject::Buffer other;
    this->read(other, this->full(), mode);
    expectSixBytes<Subject>(other);
    expectOwner<Subject>(other);
  }
}

TYPED_TEST(BufferArchive, HoldsOfABufferThatIsNotInitialisedThatItIsNot)
{
  using Format = typename TypeParam::Format;
  const typename TypeParam::Subject::Buffer buffer;
  EXPECT_EQ(fileOfMode<Format>(buffer, g_full), this->fileOf(this->notInitialised()));
  EXPECT_EQ(fileOfMode<Format>(buffer, g_skeleton), this->fileOf(this->notInitialised()));
  EXPECT_EQ(fileOfMode<Format>(buffer, g_data), this->fileOf(this->begin()));
}

TYPED_TEST(BufferArchive, HoldsNoBlockWithoutElements)
{
  using Subject = typename TypeParam::Subject;
  using Format = typename TypeParam::Format;
  typename Subject::Buffer buffer;
  Subject::own(buffer, 0, eDataType::eDT_Real32);
  const Format expected = this->structureOf(0, 10, "eDT_Real32");
  EXPECT_EQ(fileOfMode<Format>(buffer, g_full), this->fileOf(expected));
  EXPECT_EQ(fileOfMode<Format>(buffer, g_data), this->fileOf(this->begin()));
  typename Subject::Buffer other;
  ownSixBytes<Subject>(other);
  this->read(other, expected, g_full);
  expectOwner<Subject>(other);
  EXPECT_EQ(other.getSize(), 0U);
  EXPECT_EQ(other.getDataType(), eDataType::eDT_Real32);
}

TYPED_TEST(BufferArchive, HoldsTheElementsInTheByteOrderOfTheMachine)
{
  using Subject = typename TypeParam::Subject;
  const std::string bytes = bytesOf<ipReal64>({1.5, -0.0});
  typename Subject::Buffer buffer;
  Subject::own(buffer, 2, eDataType::eDT_Real64);
  setBytes<Subject>(buffer, bytes);
  const auto expected = this->withBlocks(this->structureOf(2, 11, "eDT_Real64"), bytes, 8);
  EXPECT_EQ(fileOfMode<typename TypeParam::Format>(buffer, g_full), this->fileOf(expected));
}

TYPED_TEST(BufferArchive, CannotHoldATypeThatIsNoEnumerator)
{
  using Subject = typename TypeParam::Subject;
  using Format = typename TypeParam::Format;
  typename Subject::Buffer buffer;
  Subject::own(buffer, 4, eDataType(ipUInt64{12}));
  if (std::is_same_v<Format, HandWrittenXml>) // there is no text to be written
    EXPECT_THROW(fileOfMode<Format>(buffer, g_full), std::logic_error);
  else // the number is clamped: what comes is no type
    EXPECT_EQ(fileOfMode<Format>(buffer, g_full), this->fileOf(this->structureOf(4, 0, "")));
}

TYPED_TEST(BufferArchive, CannotHoldAViewThatNoMemoryHolds)
{
  using Subject = typename TypeParam::Subject;
  using Format = typename TypeParam::Format;
  if constexpr (Subject::hasViews)
  {
    const ipUInt64 tooMany = (ipUInt64{1} << 61U) + 1; // as a number of 64 bits 8 bytes
    ipReal64 memory[2] = {7, 8};
    typename Subject::Buffer view;
    Format skeleton = this->begin();
    skeleton.boolean("bInit", true);
    if constexpr (Subject::hasFragments)
    {
      view.init(eDataType::eDT_Real64, {memory, memory + 1}, tooMany); // each of them
      skeleton.enumeration("dataType", 11, "eDT_Real64");
      skeleton.integer("nbFragments", 2);
      skeleton.integer("fragmentsSize", static_cast<std::int64_t>(tooMany));
    }
    else
    {
      view.init(tooMany, memory);
      Subject::putStructure(skeleton, static_cast<std::int64_t>(tooMany), 11, "eDT_Real64");
    }
    const std::string name = Subject::className;
    const auto expectTooLarge = [&](const std::string& function, const std::function<void()>& operation)
    {
      expectRaised<ORVELBaseDataException>(
          operation, {"Memory allocation failed with requested size 18446744073709551615", function,
                      Subject::source, "std::bad_array_new_length"});
    };
    for (const auto& mode : {g_full, g_data})
    {
      view.setSerializationMode(mode);
      std::ostringstream stream;
      typename Format::OArchive archive(stream);
      expectTooLarge("void " + name + "::writeMembers(orvel::BaseOArchive&) const",
                     [&] { view.write(archive); });
    }
    expectTooLarge("void " + name + "::readMembers(orvel::BaseIArchive&, orvel::ipUInt32)", [&]
                   { this->tryRead(view, this->withBlocks(this->begin(), "1234567812345678", 8), g_data); });
    EXPECT_EQ(memory[0], 7);
    EXPECT_EQ(fileOfMode<Format>(view, g_skeleton), skeleton.file());
  }
}

// Reading

TYPED_TEST(BufferArchive, MakesAnOwnerOfANewBufferAndOfOneOfAnotherSize)
{
  using Subject = typename TypeParam::Subject;
  typename Subject::Buffer fresh;
  this->read(fresh, this->full(), g_full);
  expectOwner<Subject>(fresh);
  expectSixBytes<Subject>(fresh);
  typename Subject::Buffer larger;
  Subject::own(larger, 100, eDataType::eDT_Real64);
  this->read(larger, this->full(), g_full);
  expectOwner<Subject>(larger);
  expectSixBytes<Subject>(larger);
}

TYPED_TEST(BufferArchive, KeepsTheBlockOfAnOwnerThatFitsToTheByte)
{
  using Subject = typename TypeParam::Subject;
  for (const auto& [size, dataType] : {std::pair(3, eDataType::eDT_UInt16),
                                       std::pair(3, eDataType::eDT_Int16), std::pair(6, eDataType::eDT_Int8)})
  {
    typename Subject::Buffer buffer;
    Subject::own(buffer, static_cast<ipUInt64>(size), dataType);
    const char* const block = blockOf(buffer);
    const std::size_t nbArrays = getNbArraysAllocated();
    setBytes<Subject>(buffer, "ABCDEF");
    this->read(buffer, this->skeleton(), g_skeleton);
    expectSixBytes<Subject>(buffer, "ABCDEF");
    this->read(buffer, this->full(), g_full);
    EXPECT_EQ(getNbArraysAllocated(), nbArrays);
    EXPECT_EQ(blockOf(buffer), block);
    expectOwner<Subject>(buffer);
    expectSixBytes<Subject>(buffer);
  }
}

TYPED_TEST(BufferArchive, BringsMemoryWithASkeletonThatDataFill)
{
  using Subject = typename TypeParam::Subject;
  typename Subject::Buffer buffer;
  this->read(buffer, this->skeleton(), g_skeleton);
  expectOwner<Subject>(buffer);
  EXPECT_EQ(buffer.getSize(), 3U);
  EXPECT_EQ(buffer.getDataType(), eDataType::eDT_UInt16);
  EXPECT_EQ(getLatestArraySize(), 6U);
  setBytes<Subject>(buffer, "ABCDEF"); // watched by the sanitizers
  const char* const block = blockOf(buffer);
  this->read(buffer, this->data(), g_data);
  EXPECT_EQ(blockOf(buffer), block);
  expectSixBytes<Subject>(buffer);
}

TYPED_TEST(BufferArchive, HasNoDataForABufferThatIsNotInitialised)
{
  typename TypeParam::Subject::Buffer buffer;
  this->read(buffer, this->begin(), g_data); // to its end
  expectCleared<typename TypeParam::Subject>(buffer);
}

TYPED_TEST(BufferArchive, ClearsWhatWasNotInitialisedWhenItWasWritten)
{
  using Subject = typename TypeParam::Subject;
  for (const auto& mode : {g_full, g_skeleton})
    forOwnerAndView<Subject>(
        [&](typename Subject::Buffer& buffer)
        {
          this->read(buffer, this->notInitialised(), mode);
          expectCleared<Subject>(buffer);
        });
}

TYPED_TEST(BufferArchive, OfVersion0IsRead)
{
  typename TypeParam::Subject::Buffer buffer;
  const auto archive = this->withBlocks(this->structureOf(3, 5, "eDT_UInt16", 0));
  readInMode<typename TypeParam::Format>(buffer, this->fileOf(archive, 0), g_full);
  expectSixBytes<typename TypeParam::Subject>(buffer);
}

// Archives that do not fit

TYPED_TEST(BufferArchive, OfATypeOfNoneIsRefusedAndChangesNothing)
{
  for (const auto& mode : {g_full, g_skeleton})
    for (const std::int64_t size : {g_one, std::int64_t{5}, g_one << 60U})
      this->expectUnchanged(
          [&](typename TypeParam::Subject::Buffer& buffer) {
            expectTypeOfNoneRefused([&]
                                    { this->tryRead(buffer, this->structureOf(size, 0, "eDT_None"), mode); });
          });
}

TYPED_TEST(BufferArchive, OfAnUnknownTypeIsRefusedAndChangesNothing)
{
  this->expectUnchanged(
      [&](typename TypeParam::Subject::Buffer& buffer)
      {
        EXPECT_THROW(this->tryRead(buffer, this->structureOf(3, 12, "eDT_Int128"), g_full),
                     ORVELSerializationException);
      });
}

TYPED_TEST(BufferArchive, ThatEndsWithinTheStructureChangesNothing)
{
  typename TypeParam::Format archive = this->begin();
  archive.boolean("bInit", true);
  if constexpr (TypeParam::Subject::hasFragments)
    archive.enumeration("dataType", 5, "eDT_UInt16");
  archive.integer(TypeParam::Subject::hasFragments ? "nbFragments" : "size", 5);
  this->expectUnchanged(
      [&](typename TypeParam::Subject::Buffer& buffer)
      { EXPECT_THROW(this->tryRead(buffer, archive, g_full), ORVELSerializationException); });
}

TYPED_TEST(BufferArchive, WithoutTheBlockThatItPromisesAllocatesNothing)
{
  const std::int64_t sizes[] = {100000, g_one << 40U, g_one << 45U, g_one << 60U};
  for (const std::int64_t size : sizes)
    this->expectUnchanged(
        [&](typename TypeParam::Subject::Buffer& buffer)
        {
          const std::size_t nbArrays = getNbArraysAllocated();
          const std::string message =
              this->failureOfRead(buffer, this->withBlocks(this->structureOf(size, 5, "eDT_UInt16")), g_full);
          EXPECT_NE(message.find("the rest of the archive can't hold " + std::to_string(size) + " elements"),
                    std::string::npos)
              << message;
          EXPECT_EQ(getNbArraysAllocated(), nbArrays);
        });
}

TYPED_TEST(BufferArchive, WithoutItsLastBytesIsRefused)
{
  typename TypeParam::Subject::Buffer buffer;
  EXPECT_THROW(this->tryRead(buffer, this->skeleton(), g_full), ORVELSerializationException);
}

TYPED_TEST(BufferArchive, OfASizeBeyond64BitsFindsNoMemory)
{
  using Subject = typename TypeParam::Subject;
  for (const std::int64_t size : {g_one << 61U, (g_one << 61U) + 1}) // as numbers of 64 bits 0 and 8 bytes
    for (const auto& mode : {g_full, g_skeleton})
      forOwnerAndView<Subject>(
          [&](typename Subject::Buffer& buffer)
          {
            const auto archive = this->withBlocks(this->structureOf(size, 11, "eDT_Real64"), "12345678", 8);
            expectNoMemory(g_largest, [&] { this->tryRead(buffer, archive, mode); });
            expectCleared<Subject>(buffer);
          });
}

TYPED_TEST(BufferArchive, OfASkeletonThatNoMemoryHoldsFindsNone)
{
  using Subject = typename TypeParam::Subject;
  forOwnerAndView<Subject>(
      [&](typename Subject::Buffer& buffer)
      {
        const auto archive = this->structureOf(g_one << 59U, 5, "eDT_UInt16");
        expectNoMemory(ipUInt64{1} << 60U, [&] { this->tryRead(buffer, archive, g_skeleton); });
        expectCleared<Subject>(buffer);
      });
}

TYPED_TEST(BufferArchive, WithDataOfAnotherSizeIsRefused)
{
  using Subject = typename TypeParam::Subject;
  for (const std::size_t elementSize : {1U, 3U}) // of fragments, the first is another
    forOwnerAndView<Subject>(
        [&](typename Subject::Buffer& buffer)
        {
          const std::string bytes = bytesIn<Subject>(buffer);
          const auto archive =
              this->withBlocks(this->begin(), elementSize == 1 ? "123" : "123456789", elementSize);
          EXPECT_THROW(this->tryRead(buffer, archive, g_data), ORVELSerializationException);
          expectSixBytes<Subject>(buffer, bytes);
        });
}

TYPED_TEST(BufferArchive, WithABlockOfAnotherSizeThanItsStructureHasBroughtTheStructure)
{
  using Subject = typename TypeParam::Subject;
  for (const std::size_t elementSize : {1U, 4U})
  {
    typename Subject::Buffer buffer;
    const auto archive =
        this->withBlocks(this->skeleton(), std::string(elementSize == 1 ? 5 : 16, 'x'), elementSize);
    EXPECT_THROW(this->tryRead(buffer, archive, g_full), ORVELSerializationException);
    expectOwner<Subject>(buffer);
    EXPECT_EQ(buffer.getSize(), 3U);
    EXPECT_EQ(buffer.getDataType(), eDataType::eDT_UInt16);
  }
}

TYPED_TEST(BufferArchive, IsRefusedWhereverItIsCutAndLeavesAnOwner)
{
  using Subject = typename TypeParam::Subject;
  using Buffer = typename Subject::Buffer;
  const auto check = [](const Buffer& buffer)
  {
    expectOwner<Subject>(buffer);
    EXPECT_EQ(buffer.getSize(), 3U);
    EXPECT_EQ(buffer.getDataType(), eDataType::eDT_UInt16);
  };
  expectRefusedWhereverItIsCut<Buffer, typename TypeParam::Format>(
      this->fileOf(this->full()), [](Buffer& buffer) { ownSixBytes<Subject>(buffer, "ABCDEF"); }, check);
}

// Memory that ends while an archive is read

TYPED_TEST(BufferArchive, LeavesAClearedBufferWhenThereIsNoMemory)
{
  using Subject = typename TypeParam::Subject;
  for (const auto& mode : {g_full, g_skeleton})
    forOwnerAndView<Subject>(
        [&](typename Subject::Buffer& buffer)
        {
          bool isOwner = true;
          if constexpr (Subject::hasViews)
            isOwner = buffer.isBufferOwn();
          if (isOwner)
            Subject::own(buffer, 100, eDataType::eDT_Real64);
          else if constexpr (Subject::hasViews)
            Subject::view(buffer, 2, eDataType::eDT_UInt16, Subject::fragmentsOf(buffer)[0]);
          buffer.setSerializationMode(mode);
          std::istringstream stream(this->full().file());
          typename TypeParam::Format::IArchive archive(stream);
          failArrayAllocationAfter(0);
          expectNoMemory(6, [&] { buffer.read(archive); });
          failNoAllocation();
          expectCleared<Subject>(buffer);
        });
}

TYPED_TEST(BufferArchive, LeaksNothingWhereverThereIsNoMemory)
{
  using Subject = typename TypeParam::Subject;
  using Buffer = typename Subject::Buffer;
  const std::string file = this->fileOf(this->full());
  std::unique_ptr<Buffer> buffer;
  const auto readAll = [&]
  {
    buffer = std::make_unique<Buffer>();
    Subject::own(*buffer, 1, eDataType::eDT_Int8);
    readFile<typename TypeParam::Format>(file, [&](BaseIArchive& archive) { buffer->read(archive); });
    expectSixBytes<Subject>(*buffer);
  };
  failInTurn(readAll, [](OutOfMemory) {}); // makes what is made once
  buffer.reset();
  const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
  int nbRaised = 0;
  failInTurn(readAll,
             [&](OutOfMemory thrown)
             {
               if (thrown == OutOfMemory::raised)
               {
                 ++nbRaised;
                 expectCleared<Subject>(*buffer);
               }
               buffer.reset();
               EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
             });
  EXPECT_EQ(nbRaised, 2 * Subject::nbAllocations); // when it starts and when it reads
  buffer.reset();
  EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
}

} // namespace
