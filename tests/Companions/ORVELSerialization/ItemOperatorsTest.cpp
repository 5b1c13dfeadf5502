#include "ORVELSerialization/ItemOperators.h"

#include <limits>
#include <new>
#include <sys/mman.h>

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include "RecordingArchive.h"
#include "SampleClasses.h"
#include <ORVELSerialization/ORVELSerializationException.h>
#include <support/RaisedFailure.h>
#include <support/Sanitizers.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

template <class T>
Calls written(const T& value, Kind kind = Kind::blocks)
{
  RecordingOArchive archive(kind);
  EXPECT_EQ(&(archive << SerializationOItem("K", value)), static_cast<BaseOArchive*>(&archive));
  return archive.calls;
}

template <class T>
Calls read(T& value, std::deque<RecordingIArchive::Value> answers, Kind kind = Kind::blocks)
{
  RecordingIArchive archive(kind, std::move(answers));
  EXPECT_EQ(&(archive >> SerializationIItem("K", value)), static_cast<BaseIArchive*>(&archive));
  EXPECT_TRUE(archive.answers.empty());
  return archive.calls;
}

const Kind g_kinds[] = {Kind::elementWise, Kind::blocks};

// Scalars

TEST(ItemOperators, HoldAKeyAndAReference)
{
  int value = 5;
  const SerializationOItem output("K", value);
  const SerializationIItem input("L", value);
  EXPECT_EQ(output.getKey(), "K");
  EXPECT_EQ(&output.getValue(), &value);
  EXPECT_EQ(input.getKey(), "L");
  EXPECT_EQ(&input.getValue(), &value);
  static_assert(std::is_same_v<decltype(output), const SerializationOItem<int>>);
  static_assert(std::is_same_v<decltype(output.getValue()), const int&>);
  static_assert(std::is_same_v<decltype(input.getValue()), int&>);
}

TEST(ItemOperators, HoldNothingElse)
{
  const std::string value;
  const SerializationOItem output("K", value);
  EXPECT_EQ(static_cast<const void*>(&output.getKey()), static_cast<const void*>(&output)); // the key first
  EXPECT_EQ(sizeof output, sizeof(std::string) + sizeof(void*));
  EXPECT_EQ(sizeof(SerializationIItem<std::string>), sizeof(std::string) + sizeof(void*));
  static_assert(!std::is_polymorphic_v<SerializationOItem<std::string>>);
  static_assert(!std::is_polymorphic_v<SerializationIItem<std::string>>);
}

TEST(ItemOperators, FileEachScalarAsOneValue)
{
  for (const Kind kind : g_kinds)
  {
    EXPECT_EQ(written(true, kind), Calls{"bool K true"});
    EXPECT_EQ(written(false, kind), Calls{"bool K false"});
    EXPECT_EQ(written(static_cast<signed char>(-128), kind), Calls{"integer K -128"});
    EXPECT_EQ(written(static_cast<unsigned char>(255), kind), Calls{"unsigned K 255"});
    EXPECT_EQ(written(static_cast<short>(-32768), kind), Calls{"integer K -32768"});
    EXPECT_EQ(written(static_cast<unsigned short>(65535), kind), Calls{"unsigned K 65535"});
    EXPECT_EQ(written(std::numeric_limits<int>::min(), kind), Calls{"integer K -2147483648"});
    EXPECT_EQ(written(4294967295U, kind), Calls{"unsigned K 4294967295"});
    EXPECT_EQ(written(std::numeric_limits<long>::min(), kind), Calls{"integer K -9223372036854775808"});
    EXPECT_EQ(written(18446744073709551615UL, kind), Calls{"unsigned K 18446744073709551615"});
    EXPECT_EQ(written(-1.5F, kind), Calls{"real32 K " + numberText(-1.5F)});
    EXPECT_EQ(written(2.25, kind), Calls{"real64 K " + numberText(2.25)});
    EXPECT_EQ(written(std::string("text"), kind), Calls{"string K text"});
    EXPECT_EQ(written(boost::filesystem::path("a/b"), kind), Calls{"string K a/b"});
  }
}

template <class T>
void expectRead(RecordingIArchive::Value answer, T expected, const std::string& call)
{
  for (const Kind kind : g_kinds)
  {
    T value{};
    EXPECT_EQ(read(value, {answer}, kind), Calls{call});
    EXPECT_EQ(value, expected);
  }
}

TEST(ItemOperators, ReadEachScalarInItsOwnWidth)
{
  expectRead<bool>(true, true, "bool K");
  expectRead<signed char>(ipInt64{-128}, -128, "integer K [-128, 127]");
  expectRead<unsigned char>(ipUInt64{255}, 255, "unsigned K [0, 255]");
  expectRead<short>(ipInt64{-32768}, -32768, "integer K [-32768, 32767]");
  expectRead<unsigned short>(ipUInt64{65535}, 65535, "unsigned K [0, 65535]");
  expectRead<int>(ipInt64{-2147483648}, std::numeric_limits<int>::min(),
                  "integer K [-2147483648, 2147483647]");
  expectRead<unsigned int>(ipUInt64{4294967295}, 4294967295U, "unsigned K [0, 4294967295]");
  expectRead<long>(std::numeric_limits<ipInt64>::min(), std::numeric_limits<long>::min(),
                   "integer K [-9223372036854775808, 9223372036854775807]");
  expectRead<unsigned long>(std::numeric_limits<ipUInt64>::max(), 18446744073709551615UL,
                            "unsigned K [0, 18446744073709551615]");
  expectRead<float>(ipReal32{-1.5F}, -1.5F, "real32 K");
  expectRead<double>(ipReal64{2.25}, 2.25, "real64 K");
  expectRead<std::string>(std::string("text"), "text", "string K");
  expectRead<boost::filesystem::path>(std::string("a/b"), "a/b", "string K");
}

// Objects in place

TEST(ItemOperators, MoveAnObjectInPlaceThroughItsOwnWriteAndRead)
{
  EXPECT_EQ(written(TestPoint(1, 2)), (Calls{"object K {", "section orvel::TestPoint {", "unsigned version 3",
                                             "}", "integer _x 1", "integer _y 2", "}"}));
  TestPoint point;
  EXPECT_EQ(read(point, {ipUInt64{3}, ipInt64{1}, ipInt64{2}}),
            (Calls{"object K {", "section orvel::TestPoint {", "unsigned version [0, 4294967295]", "}",
                   "integer _x [-2147483648, 2147483647]", "integer _y [-2147483648, 2147483647]", "}"}));
  EXPECT_TRUE(point == TestPoint(1, 2));
}

TEST(ItemOperators, MoveAnObjectByAReferenceToItsRoot)
{
  const TestPoint point(1, 2);
  const BaseSerializationObject& root = point;
  EXPECT_EQ(written(root), written(point));
  TestPoint target;
  BaseSerializationObject& targetRoot = target;
  read(targetRoot, {ipUInt64{3}, ipInt64{4}, ipInt64{5}});
  EXPECT_TRUE(target == TestPoint(4, 5));
}

// Vectors

TEST(ItemOperators, FileAVectorOfNumbersElementByElement)
{
  EXPECT_EQ(written(std::vector<short>{-1, 2}, Kind::elementWise),
            (Calls{"section K {", "section vector {", "unsigned size 2", "integer value -1",
                   "integer value 2", "}", "}"}));
  EXPECT_EQ(written(std::vector<double>{}, Kind::elementWise),
            (Calls{"section K {", "section vector {", "unsigned size 0", "}", "}"}));
}

template <class E>
void expectBlock()
{
  const std::vector<E> values(3, E{1});
  RecordingOArchive archive;
  archive << SerializationOItem("K", values);
  EXPECT_EQ(archive.calls, (Calls{"section K {", "section vector {", "unsigned size 3",
                                  "block of " + std::to_string(3 * sizeof(E)) + " bytes", "}", "}"}));
  EXPECT_EQ(archive.blockData, values.data());

  std::vector<E> target(7);
  const std::string bytes(reinterpret_cast<const char*>(values.data()), 3 * sizeof(E));
  EXPECT_EQ(read(target, {ipUInt64{3}, bytes}),
            (Calls{"section K {", "section vector {", "unsigned size [0, 4294967295]",
                   "block of " + std::to_string(3 * sizeof(E)) + " bytes", "}", "}"}));
  EXPECT_EQ(target, values);
}

TEST(ItemOperators, FileAVectorOfNumbersAsOneBlockElsewhere)
{
  expectBlock<signed char>();
  expectBlock<unsigned char>();
  expectBlock<short>();
  expectBlock<unsigned short>();
  expectBlock<int>();
  expectBlock<unsigned int>();
  expectBlock<long>();
  expectBlock<unsigned long>();
  expectBlock<float>();
  expectBlock<double>();
}

TEST(ItemOperators, FileTheBlockOfAnEmptyVectorToo)
{
  EXPECT_EQ(written(std::vector<ipUInt8>{}),
            (Calls{"section K {", "section vector {", "unsigned size 0", "block of 0 bytes", "}", "}"}));
  std::vector<ipUInt8> target(3);
  EXPECT_EQ(read(target, {ipUInt64{0}, std::string()}),
            (Calls{"section K {", "section vector {", "unsigned size [0, 4294967295]", "block of 0 bytes",
                   "}", "}"}));
  EXPECT_TRUE(target.empty());
}

TEST(ItemOperators, ReadAVectorOfNumbersElementByElement)
{
  std::vector<short> values = {9, 9, 9};
  EXPECT_EQ(read(values, {ipUInt64{2}, ipInt64{-1}, ipInt64{2}}, Kind::elementWise),
            (Calls{"section K {", "section vector {", "unsigned size [0, 4294967295]",
                   "integer value [-32768, 32767]", "integer value [-32768, 32767]", "}", "}"}));
  EXPECT_EQ(values, (std::vector<short>{-1, 2}));
}

TEST(ItemOperators, ReadElementsIntoThePlaceOfTheOldOnes)
{
  // Resized first: what a failure leaves is the new length, with old elements behind the new ones.
  std::vector<short> numbers = {7, 8, 9};
  RecordingIArchive longer(Kind::elementWise, {ipUInt64{5}, ipInt64{1}});
  EXPECT_THROW(longer >> SerializationIItem("K", numbers), std::logic_error);
  EXPECT_EQ(numbers, (std::vector<short>{1, 8, 9, 0, 0}));
  RecordingIArchive shorter(Kind::elementWise, {ipUInt64{2}});
  EXPECT_THROW(shorter >> SerializationIItem("K", numbers), std::logic_error);
  EXPECT_EQ(numbers, (std::vector<short>{1, 8}));
  RecordingIArchive block(Kind::blocks, {ipUInt64{3}});
  EXPECT_THROW(block >> SerializationIItem("K", numbers), std::logic_error);
  EXPECT_EQ(numbers, (std::vector<short>{1, 8, 0}));

  std::vector<std::string> texts = {"a", "b"};
  RecordingIArchive ofTexts(Kind::blocks, {ipUInt64{3}, std::string("c")});
  EXPECT_THROW(ofTexts >> SerializationIItem("K", texts), std::logic_error);
  EXPECT_EQ(texts, (std::vector<std::string>{"c", "b", ""}));
}

TEST(ItemOperators, ReadBitsIntoThePlaceOfTheOldOnes)
{
  for (const Kind kind : g_kinds)
  {
    std::vector<bool> bits(3, true);
    RecordingIArchive longer(kind, {ipUInt64{4}, false});
    EXPECT_THROW(longer >> SerializationIItem("K", bits), std::logic_error);
    EXPECT_EQ(bits, (std::vector<bool>{false, true, true, false}));
    RecordingIArchive shorter(kind, {ipUInt64{2}});
    EXPECT_THROW(shorter >> SerializationIItem("K", bits), std::logic_error);
    EXPECT_EQ(bits, (std::vector<bool>{false, true}));
  }
}

TEST(ItemOperators, FileOtherVectorsElementByElementInEveryArchive)
{
  for (const Kind kind : g_kinds)
  {
    EXPECT_EQ(written(std::vector<bool>{true, false}, kind),
              (Calls{"section K {", "section vector {", "unsigned size 2", "bool value true",
                     "bool value false", "}", "}"}));
    EXPECT_EQ(written(std::vector<bool>{}, kind),
              (Calls{"section K {", "section vector {", "unsigned size 0", "}", "}"}));
    EXPECT_EQ(written(std::vector<std::string>{"a", ""}, kind),
              (Calls{"section K {", "section vector {", "unsigned size 2", "string value a", "string value ",
                     "}", "}"}));
    EXPECT_EQ(written(std::vector<boost::filesystem::path>{"/a"}, kind),
              (Calls{"section K {", "section vector {", "unsigned size 1", "string value /a", "}", "}"}));
    EXPECT_EQ(written(std::vector<TestPointPtr>{boost::make_shared<TestPoint>(1, 2), nullptr}, kind),
              (Calls{"section K {", "section vector {", "unsigned size 2", "section value {",
                     "section shared_ptr<orvel::TestPoint> {", "pointer pObject orvel::TestPoint", "}", "}",
                     "section value {", "section shared_ptr<orvel::TestPoint> {", "pointer pObject null", "}",
                     "}", "}", "}"}));
  }
}

TEST(ItemOperators, ReadOtherVectorsElementByElementInEveryArchive)
{
  for (const Kind kind : g_kinds)
  {
    std::vector<bool> bools(5, true);
    EXPECT_EQ(read(bools, {ipUInt64{2}, true, false}, kind),
              (Calls{"section K {", "section vector {", "unsigned size [0, 4294967295]", "bool value",
                     "bool value", "}", "}"}));
    EXPECT_EQ(bools, (std::vector<bool>{true, false}));

    std::vector<std::string> strings = {"old"};
    EXPECT_EQ(read(strings, {ipUInt64{2}, std::string("a"), std::string()}, kind),
              (Calls{"section K {", "section vector {", "unsigned size [0, 4294967295]", "string value",
                     "string value", "}", "}"}));
    EXPECT_EQ(strings, (std::vector<std::string>{"a", ""}));

    std::vector<boost::filesystem::path> paths;
    read(paths, {ipUInt64{1}, std::string("/a")}, kind);
    EXPECT_EQ(paths, (std::vector<boost::filesystem::path>{"/a"}));

    std::vector<TestPointPtr> pointers;
    const SerializationObjectPtr point = boost::make_shared<TestPoint>(1, 2);
    EXPECT_EQ(read(pointers, {ipUInt64{2}, point, SerializationObjectPtr()}, kind),
              (Calls{"section K {", "section vector {", "unsigned size [0, 4294967295]", "section value {",
                     "section shared_ptr<> {", "pointer pObject", "}", "}", "section value {",
                     "section shared_ptr<> {", "pointer pObject", "}", "}", "}", "}"}));
    ASSERT_EQ(pointers.size(), 2U);
    EXPECT_EQ(pointers[0], point);
    EXPECT_EQ(pointers[1], nullptr);
  }
}

TEST(ItemOperators, LetTheOldElementsOfAVectorOfPointersGoFirst)
{
  const int nbBefore = TestNode::g_nbAlive;
  std::vector<TestNodePtr> nodes = {boost::make_shared<TestNode>(), boost::make_shared<TestNode>()};
  ASSERT_EQ(TestNode::g_nbAlive, nbBefore + 2);
  RecordingIArchive archive(Kind::blocks, {ipUInt64{2}}); // and no answer for the first element
  EXPECT_THROW(archive >> SerializationIItem("K", nodes), std::logic_error);
  EXPECT_EQ(TestNode::g_nbAlive, nbBefore);
  EXPECT_EQ(nodes, (std::vector<TestNodePtr>{nullptr, nullptr}));
}

TEST(ItemOperators, KeepTheOldElementsIfNotEvenTheCountComes)
{
  std::vector<TestNodePtr> nodes = {boost::make_shared<TestNode>()};
  RecordingIArchive archive;
  EXPECT_THROW(archive >> SerializationIItem("K", nodes), std::logic_error);
  ASSERT_EQ(nodes.size(), 1U);
  EXPECT_NE(nodes[0], nullptr);
}

/// Gives address space that is never touched, for vectors that no memory could hold.
template <class T>
struct LazyAllocator
{
  using value_type = T;
  LazyAllocator() = default;
  template <class U>
  LazyAllocator(const LazyAllocator<U>&)
  {
  }
  T* allocate(std::size_t count)
  {
    void* memory =
        ::mmap(nullptr, count * sizeof(T), PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (memory == MAP_FAILED)
      throw std::bad_alloc();
    return static_cast<T*>(memory);
  }
  void deallocate(T* memory, std::size_t count) { ::munmap(memory, count * sizeof(T)); }
  template <class U>
  void construct(U*)
  {
  }
  template <class U>
  void destroy(U*)
  {
  }
  bool operator==(const LazyAllocator&) const { return true; }
  bool operator!=(const LazyAllocator&) const { return false; }
};

TEST(ItemOperators, CutACountToItsLowThirtyTwoBits)
{
  const std::vector<unsigned short, LazyAllocator<unsigned short>> values((std::size_t{1} << 32U) + 5);
  // The block is that of the vector: what is cut is the number that is stored.
  EXPECT_EQ(written(values), (Calls{"section K {", "section vector {", "unsigned size 5",
                                    "block of 8589934602 bytes", "}", "}"}));
}

TEST(ItemOperators, StoreTheLargestCountThatFits)
{
  const std::vector<unsigned char, LazyAllocator<unsigned char>> values(4294967295U);
  EXPECT_EQ(written(values), (Calls{"section K {", "section vector {", "unsigned size 4294967295",
                                    "block of 4294967295 bytes", "}", "}"}));
}

// Sets

TEST(ItemOperators, FileASetInItsOrder)
{
  for (const Kind kind : g_kinds)
  {
    const std::set<TestPoint> points = {TestPoint(7, 1), TestPoint(2, 3)};
    EXPECT_EQ(written(points, kind),
              (Calls{"section K {", "section set {", "unsigned size 2", "object key {",
                     "section orvel::TestPoint {", "unsigned version 3", "}", "integer _x 2", "integer _y 3",
                     "}", "object key {", "integer _x 7", "integer _y 1", "}", "}", "}"}));
    EXPECT_EQ(written(std::set<TestPoint>(), kind),
              (Calls{"section K {", "section set {", "unsigned size 0", "}", "}"}));
  }
}

TEST(ItemOperators, KeepTheFirstOfRepeatedSetElements)
{
  for (const Kind kind : g_kinds)
  {
    std::set<TestPoint> points = {TestPoint(50, 50)};
    const Calls calls = read(
        points,
        {ipUInt64{3}, ipUInt64{3}, ipInt64{7}, ipInt64{1}, ipInt64{2}, ipInt64{5}, ipInt64{7}, ipInt64{9}},
        kind);
    EXPECT_EQ(calls, (Calls{"section K {",
                            "section set {",
                            "unsigned size [0, 4294967295]",
                            "object key {",
                            "section orvel::TestPoint {",
                            "unsigned version [0, 4294967295]",
                            "}",
                            "integer _x [-2147483648, 2147483647]",
                            "integer _y [-2147483648, 2147483647]",
                            "}",
                            "object key {",
                            "integer _x [-2147483648, 2147483647]",
                            "integer _y [-2147483648, 2147483647]",
                            "}",
                            "object key {",
                            "integer _x [-2147483648, 2147483647]",
                            "integer _y [-2147483648, 2147483647]",
                            "}",
                            "}",
                            "}"}));
    EXPECT_EQ(points, (std::set<TestPoint>{TestPoint(2, 5), TestPoint(7, 1)}));
  }
}

// Maps

TEST(ItemOperators, FileAMapInItsOrder)
{
  for (const Kind kind : g_kinds)
  {
    EXPECT_EQ(written(std::map<std::string, double>{{"b", 2}, {"a", 1}}, kind),
              (Calls{"section K {", "section map {", "unsigned size 2", "string key a",
                     "real64 value " + numberText(1.0), "string key b", "real64 value " + numberText(2.0),
                     "}", "}"}));
    EXPECT_EQ(written(std::map<int, int>(), kind),
              (Calls{"section K {", "section map {", "unsigned size 0", "}", "}"}));
  }
}

TEST(ItemOperators, FileMapKeysInPlaceAndMappedPointersAsPointers)
{
  const std::map<TestPoint, TestPointPtr> map = {{TestPoint(1, 2), boost::make_shared<TestPoint>(3, 4)}};
  EXPECT_EQ(written(map),
            (Calls{"section K {", "section map {", "unsigned size 1", "object key {",
                   "section orvel::TestPoint {", "unsigned version 3", "}", "integer _x 1", "integer _y 2",
                   "}", "section value {", "section shared_ptr<orvel::TestPoint> {",
                   "pointer pObject orvel::TestPoint", "}", "}", "}", "}"}));
  std::map<TestPoint, TestPointPtr> target;
  const SerializationObjectPtr mapped = boost::make_shared<TestPoint>(3, 4);
  EXPECT_EQ(read(target, {ipUInt64{1}, ipUInt64{3}, ipInt64{1}, ipInt64{2}, mapped}),
            (Calls{"section K {", "section map {", "unsigned size [0, 4294967295]", "object key {",
                   "section orvel::TestPoint {", "unsigned version [0, 4294967295]", "}",
                   "integer _x [-2147483648, 2147483647]", "integer _y [-2147483648, 2147483647]", "}",
                   "section value {", "section shared_ptr<> {", "pointer pObject", "}", "}", "}", "}"}));
  ASSERT_EQ(target.size(), 1U);
  EXPECT_TRUE(target.begin()->first == TestPoint(1, 2));
  EXPECT_EQ(target.begin()->second, mapped);
}

TEST(ItemOperators, KeepTheLastOfRepeatedMapKeys)
{
  std::map<int, std::string> map = {{50, "old"}};
  EXPECT_EQ(read(map, {ipUInt64{4}, ipInt64{2}, std::string("a"), ipInt64{1}, std::string("b"), ipInt64{2},
                       std::string("c"), ipInt64{9}, std::string("d")})
                .size(),
            13U);
  EXPECT_EQ(map, (std::map<int, std::string>{{1, "b"}, {2, "c"}, {9, "d"}}));
}

TEST(ItemOperators, EnterEachEntryAsItIsRead)
{
  std::map<int, int> map = {{50, 50}};
  RecordingIArchive archive(Kind::blocks, {ipUInt64{2}, ipInt64{1}, ipInt64{10}, ipInt64{2}});
  EXPECT_THROW(archive >> SerializationIItem("K", map), std::logic_error);
  EXPECT_EQ(map, (std::map<int, int>{{1, 10}}));

  std::set<TestPoint> set = {TestPoint(50, 50)};
  RecordingIArchive more(Kind::blocks, {ipUInt64{2}, ipUInt64{3}, ipInt64{1}, ipInt64{10}, ipInt64{2}});
  EXPECT_THROW(more >> SerializationIItem("K", set), std::logic_error);
  EXPECT_EQ(set, (std::set<TestPoint>{TestPoint(1, 10)}));
}

TEST(ItemOperators, EmptySetsAndMapsAlsoIfNotEvenTheCountComes)
{
  for (const Kind kind : g_kinds)
  {
    std::map<int, int> map = {{50, 50}};
    RecordingIArchive archive(kind);
    EXPECT_THROW(archive >> SerializationIItem("K", map), std::logic_error);
    EXPECT_TRUE(map.empty());

    std::set<TestPoint> set = {TestPoint(50, 50)};
    RecordingIArchive more(kind);
    EXPECT_THROW(more >> SerializationIItem("K", set), std::logic_error);
    EXPECT_TRUE(set.empty());
  }
}

// Containers of containers

TEST(ItemOperators, FileContainersWithinContainers)
{
  const std::map<int, std::vector<std::vector<short>>> map = {{1, {{2, 3}, {}}}};
  EXPECT_EQ(written(map), (Calls{"section K {",
                                 "section map {",
                                 "unsigned size 1",
                                 "integer key 1",
                                 "section value {",
                                 "section vector {",
                                 "unsigned size 2",
                                 "section value {",
                                 "section vector {",
                                 "unsigned size 2",
                                 "block of 4 bytes",
                                 "}",
                                 "}",
                                 "section value {",
                                 "section vector {",
                                 "unsigned size 0",
                                 "block of 0 bytes",
                                 "}",
                                 "}",
                                 "}",
                                 "}",
                                 "}",
                                 "}"}));
}

// Shared objects

TEST(ItemOperators, FileASharedObjectUnderTheNameOfItsType)
{
  for (const Kind kind : g_kinds)
  {
    const TestPointPtr point = boost::make_shared<TestPoint>();
    EXPECT_EQ(written(point, kind), (Calls{"section K {", "section shared_ptr<orvel::TestPoint> {",
                                           "pointer pObject orvel::TestPoint", "}", "}"}));
    EXPECT_EQ(written(TestPointPtr(), kind), (Calls{"section K {", "section shared_ptr<orvel::TestPoint> {",
                                                    "pointer pObject null", "}", "}"}));
    // The section is named after the pointer's type, the pointer after the object's.
    EXPECT_EQ(written(SerializationObjectPtr(point), kind),
              (Calls{"section K {", "section shared_ptr<orvel::BaseSerializationObject> {",
                     "pointer pObject orvel::TestPoint", "}", "}"}));
  }
}

struct LongNamed : TestPoint
{
  static const std::string& getTypeName()
  {
    static const std::string g_typeName = "orvel::" + std::string(500, 'a');
    return g_typeName;
  }
};

TEST(ItemOperators, FileASharedObjectUnderANameOfAnyLength)
{
  EXPECT_EQ(written(boost::shared_ptr<LongNamed>(), Kind::elementWise),
            (Calls{"section K {", "section shared_ptr<orvel::" + std::string(500, 'a') + "> {",
                   "pointer pObject null", "}", "}"}));
}

TEST(ItemOperators, ReadASharedObjectUnderTheNameOfNoType)
{
  for (const Kind kind : g_kinds)
  {
    const SerializationObjectPtr object = boost::make_shared<TestPoint>();
    TestPointPtr point;
    EXPECT_EQ(read(point, {object}, kind),
              (Calls{"section K {", "section shared_ptr<> {", "pointer pObject", "}", "}"}));
    EXPECT_EQ(point, object);
    read(point, {SerializationObjectPtr()}, kind);
    EXPECT_EQ(point, nullptr);
  }
}

TEST(ItemOperators, TakePointersToConstantObjects)
{
  const boost::shared_ptr<const TestPoint> point = boost::make_shared<TestPoint>(1, 2);
  RecordingOArchive archive;
  archive << SerializationOItem("K", point);
  EXPECT_EQ(archive.calls, (Calls{"section K {", "section shared_ptr<orvel::TestPoint> {",
                                  "pointer pObject orvel::TestPoint", "}", "}"}));
  ASSERT_EQ(archive.pointers.size(), 1U);
  EXPECT_EQ(archive.pointers[0], point);
  EXPECT_EQ(written(SerializationObjectConstPtr(point)),
            (Calls{"section K {", "section shared_ptr<orvel::BaseSerializationObject> {",
                   "pointer pObject orvel::TestPoint", "}", "}"}));
  EXPECT_EQ(written(std::vector<boost::shared_ptr<const TestPoint>>{point}).size(), 10U);

  boost::shared_ptr<const TestPoint> target;
  const SerializationObjectPtr object = boost::make_shared<TestPoint>();
  read(target, {object});
  EXPECT_EQ(target, object);
}

TEST(ItemOperators, TrustTheClassOfASharedObjectUnlessToldOtherwise)
{
  if (isSanitized)
    GTEST_SKIP() << "a conversion on trust to a wrong class is what the sanitizers look for";
  RecordingIArchive archive(Kind::blocks, {SerializationObjectPtr(boost::make_shared<TestWithMode>())});
  EXPECT_FALSE(archive.isUntrusted());
  TestPointPtr point;
  archive >> SerializationIItem("K", point);
  EXPECT_EQ(point->getClassName(), "orvel::TestWithMode"); // no point at all, as the contract says
}

TEST(ItemOperators, RefuseAnotherClassWhenUntrusted)
{
  RecordingIArchive archive(Kind::blocks, {SerializationObjectPtr(boost::make_shared<TestWithMode>())});
  archive.setUntrusted(true);
  EXPECT_TRUE(archive.isUntrusted());
  const TestPointPtr old = boost::make_shared<TestPoint>();
  TestPointPtr point = old;
  EXPECT_EQ(messageOf<ORVELSerializationException>([&] { archive >> SerializationIItem("K", point); }),
            "Archive recording, call 3: an object of class orvel::TestWithMode can't stand for class "
            "orvel::TestPoint");
  EXPECT_EQ(point, old);
  EXPECT_TRUE(archive.isFailed());
}

TEST(ItemOperators, TakeDerivedClassesAndNullWhenUntrusted)
{
  const SerializationObjectPtr object = boost::make_shared<TestWithMode>();
  RecordingIArchive archive(Kind::blocks, {object, SerializationObjectPtr()});
  archive.setUntrusted(true);
  boost::shared_ptr<const BaseObjectWithSkeleton> read;
  archive >> SerializationIItem("K", read);
  EXPECT_EQ(read, object);
  archive >> SerializationIItem("K", read);
  EXPECT_EQ(read, nullptr);
}

// Counts that an archive can't fill

TEST(ItemOperators, AskTheArchiveBeforeAVectorGrows)
{
  std::vector<double> values = {1, 2};
  RecordingIArchive archive(Kind::blocks, {ipUInt64{4294967295}});
  archive.nbBytesLeft = 4294967295U * sizeof(double) - 1;
  EXPECT_EQ(messageOf<ORVELSerializationException>([&] { archive >> SerializationIItem("K", values); }),
            "Archive recording, call 3: the rest of the archive can't hold 4294967295 elements");
  EXPECT_EQ(values, (std::vector<double>{1, 2}));
  EXPECT_TRUE(archive.isFailed());
}

template <class T>
void expectCountRefused(Kind kind)
{
  T values;
  RecordingIArchive archive(kind, {ipUInt64{4294967295}});
  archive.minItemSize = 19;
  archive.nbBytesLeft = ipUInt64{19} * 4294967295U - 1;
  EXPECT_EQ(messageOf<ORVELSerializationException>([&] { archive >> SerializationIItem("K", values); }),
            "Archive recording, call 3: the rest of the archive can't hold 4294967295 elements");
  EXPECT_TRUE(values.empty());
}

TEST(ItemOperators, AskTheArchiveBeforeAnyContainerGrows)
{
  expectCountRefused<std::vector<float>>(Kind::elementWise);
  for (const Kind kind : g_kinds)
  {
    expectCountRefused<std::vector<bool>>(kind);
    expectCountRefused<std::vector<std::string>>(kind);
    expectCountRefused<std::vector<TestPointPtr>>(kind);
    expectCountRefused<std::set<TestPoint>>(kind);
    expectCountRefused<std::map<std::string, int>>(kind);
  }
}

} // namespace
