// Whatever an archive takes, it gives back: random objects and trees of them, from fixed seeds.

#include <array>
#include <cstring>
#include <functional>
#include <limits>
#include <map>
#include <random>
#include <sstream>
#include <string_view>
#include <type_traits>

#include <boost/filesystem/path.hpp>
#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include "Samples.h"
#include <ORVELBaseData/ORVELBaseData.h>
#include <ORVELSerialization/BinaryArchive.h>
#include <ORVELSerialization/XmlArchive.h>
#include <support/ClassList.h>
#include <support/ObjectCollArchive.h>
#include <support/SampleNode.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

/// Values that find faults: the ends of each type, every bit pattern, every byte.
class Random
{
public:
  explicit Random(ipUInt64 seed)
    : _engine(seed)
  {
  }

  /// Returns 0 to last.
  ipUInt64 upTo(ipUInt64 last) { return _engine() % (last + 1); }

  bool isOneIn(ipUInt64 count) { return upTo(count - 1) == 0; }

  /// Returns few as a rule, and sometimes many.
  ipUInt64 count(ipUInt64 many) { return upTo(isOneIn(20) ? many : 5); }

  template <class T>
  void set(T& value)
  {
    using Limits = std::numeric_limits<T>;
    const std::array<T, 6> ends = {Limits::min(),      Limits::max(),       Limits::lowest(),
                                   Limits::infinity(), Limits::quiet_NaN(), T(1)};
    if (isOneIn(4))
      value = ends[upTo(ends.size() - 1)];
    else if constexpr (std::is_same_v<T, ipBool>)
      value = isOneIn(2);
    else
    {
      ipUInt64 bits = _engine();
      if (std::is_floating_point_v<T> && isOneIn(4)) // a NaN of any payload
        bits |= sizeof(T) == 4 ? 0x7F800000 : 0x7FF0000000000000;
      std::memcpy(&value, &bits, sizeof(value));
      if (isOneIn(2))
        value = static_cast<T>(upTo(9));
    }
  }

  void set(std::string& value)
  {
    static const std::array<std::string, 4> g_alphabets = {"abcXYZ019 ._-/",
                                                           std::string("<>&\"' \t\r\n]\0", 11),
                                                           "\xC2\xB5\xEF\xBF\xBE\xED\xA0\x80\xF4\x90", ""};
    const std::string& alphabet = g_alphabets[upTo(g_alphabets.size() - 1)];
    value.resize(count(3000));
    for (char& character : value)
      character = alphabet.empty() ? static_cast<char>(upTo(255)) : alphabet[upTo(alphabet.size() - 1)];
  }

  void set(boost::filesystem::path& value) { value = get<std::string>(); }

  template <class T>
  T get()
  {
    T value;
    set(value);
    return value;
  }

private:
  std::mt19937_64 _engine;
};

/// An enumeration leaf that knows no enumeration: it has no text to store.
constexpr std::string_view g_unwritten = "orvel::BaseDataItemEnumLeaf";

using MakeObject = std::function<SerializationObjectPtr(Random&)>;
using Makers = std::map<std::string, MakeObject>;

// Values

template <class T>
DataItemPtr makeLeaf(Random& random)
{
  auto leaf = boost::make_shared<DataItemLeaf<T>>();
  leaf->setValue(random.get<T>());
  return leaf;
}

template <class T>
DataItemPtr makeLeafColl(Random& random)
{
  auto coll = boost::make_shared<DataItemLeafColl<T>>();
  for (ipUInt64 i = random.count(std::is_arithmetic_v<T> ? 1000 : 50); i != 0; --i)
    coll->push_back(random.get<T>());
  return coll;
}

/// Returns a leaf or a collection of one of the value types.
DataItemPtr makeAnyLeaf(Random& random)
{
  using MakeItem = DataItemPtr (*)(Random&);
#define ORVEL_TEST_MAKE_LEAVES(Type, Name, text) makeLeaf<Type>, makeLeafColl<Type>,
  static constexpr MakeItem g_makers[] = {ORVEL_FOR_EACH_VALUE_TYPE(ORVEL_TEST_MAKE_LEAVES)};
#undef ORVEL_TEST_MAKE_LEAVES
  return g_makers[random.upTo(std::size(g_makers) - 1)](random);
}

SerializationObjectPtr makeCalibration(Random& random)
{
  auto calibration = boost::make_shared<GeometricCalibration>();
  const auto real = [&]
  {
    return random.get<ipReal32>();
  };
  calibration->init3d(1, 1, 1, random.get<std::string>(), 0, 0, 0, real(), real(), real(), real());
  calibration->setScale(real(), real(), real(), random.get<std::string>()); // which no check restricts
  calibration->setOrigin(real(), real(), real());
  return calibration;
}

void setOffset(Random& random, OffsetXY& offset)
{
  offset = OffsetXY(random.get<ipInt32>(), random.get<ipInt32>());
}

void setOffset(Random& random, OffsetXYZ& offset)
{
  offset = OffsetXYZ(random.get<ipInt32>(), random.get<ipInt32>(), random.get<ipInt32>());
}

template <class Offset>
SerializationObjectPtr makeOffset(Random& random)
{
  auto offset = boost::make_shared<Offset>();
  setOffset(random, *offset);
  return offset;
}

template <class Kernel>
SerializationObjectPtr makeKernel(Random& random)
{
  auto kernel = boost::make_shared<Kernel>();
  for (ipUInt64 i = random.count(200); i != 0; --i)
  {
    typename Kernel::OffsetType offset;
    setOffset(random, offset);
    if (kernel->exists(offset))
      kernel->remove(offset);
    else
      kernel->insert(offset, random.get<ipReal32>());
  }
  if (random.isOneIn(4))
    kernel->multiply(random.get<ipReal32>());
  return kernel;
}

template <class Element>
boost::shared_ptr<Element> makeElementOf(Random& random)
{
  auto element = boost::make_shared<Element>();
  for (ipUInt64 i = random.count(200); i != 0; --i)
  {
    typename Element::OffsetType offset;
    setOffset(random, offset);
    if (!element->exists(offset))
      element->insert(offset);
  }
  return element;
}

SerializationObjectPtr makePlanarInfo(Random& random)
{
  auto info = boost::make_shared<StructuringElementXYInfo>();
  const auto size = [&]
  {
    return static_cast<ipUInt32>(random.upTo(3));
  };
  const std::array<std::function<void()>, 6> shapes = {
      [&] { info->init(*makeElementOf<StructuringElementXY>(random)); },
      [&] { info->initCircular(size()); },
      [&] { info->initSquare(size()); },
      [&] { info->initRectangular(size(), size()); },
      [&] { info->initHalfLinear(random.get<ipReal64>(), size()); },
      [&] { info->initLinear(random.get<ipReal64>(), size()); },
  };
  shapes[random.upTo(shapes.size() - 1)]();
  info->insert(random.get<ipInt32>(), random.get<ipInt32>());
  return info;
}

SerializationObjectPtr makeSpatialInfo(Random& random)
{
  auto info = boost::make_shared<StructuringElementXYZInfo>();
  const auto size = [&]
  {
    return static_cast<ipUInt32>(random.upTo(2));
  };
  const auto angle = [&]
  {
    return random.get<ipReal64>();
  };
  const std::array<std::function<void()>, 6> shapes = {
      [&] { info->init(*makeElementOf<StructuringElementXYZ>(random)); },
      [&] { info->initSpherical(size()); },
      [&] { info->initCubic(size()); },
      [&] { info->initRectangular(size(), size(), size()); },
      [&] { info->initHalfLinear(angle(), angle(), size()); },
      [&] { info->initLinear(angle(), angle(), size()); },
  };
  shapes[random.upTo(shapes.size() - 1)]();
  info->insert(random.get<ipInt32>(), random.get<ipInt32>(), random.get<ipInt32>());
  return info;
}

// Buffers

eDataType anyDataType(Random& random)
{
#define ORVEL_TEST_DATA_TYPE(Name) eDataType::eDT_##Name,
  static constexpr eDataType::domain g_types[] = {ORVEL_FOR_EACH_ELEMENT_TYPE(ORVEL_TEST_DATA_TYPE)};
#undef ORVEL_TEST_DATA_TYPE
  return g_types[random.upTo(std::size(g_types) - 1)];
}

void fill(Random& random, const eDataType& dataType, void* memory, ipUInt64 sizeInBytes)
{
  auto* const bytes = static_cast<unsigned char*>(memory);
  for (ipUInt64 i = 0; i < sizeInBytes; ++i)
    bytes[i] = static_cast<unsigned char>(random.upTo(dataType == eDataType::eDT_Bool ? 1 : 255));
}

template <class Buffer>
SerializationObjectPtr filled(Random& random, const boost::shared_ptr<Buffer>& buffer)
{
  fill(random, buffer->getDataType(), buffer->getDataPtr(), buffer->getMemorySize());
  return buffer;
}

template <class T>
SerializationObjectPtr makeOwnBuffer(Random& random)
{
  auto buffer = boost::make_shared<TOwnBuffer<T>>();
  buffer->init(random.count(500));
  return filled(random, buffer);
}

template <class Buffer>
SerializationObjectPtr makeTypedBuffer(Random& random)
{
  auto buffer = boost::make_shared<Buffer>();
  buffer->init(random.count(500), anyDataType(random));
  return filled(random, buffer);
}

SerializationObjectPtr makeFragments(Random& random)
{
  auto buffer = boost::make_shared<FragHybridBuffer>();
  if (random.isOneIn(4))
  {
    buffer->init(anyDataType(random), random.upTo(20000), 0); // fragments without an element
    return buffer;
  }
  const ipUInt64 nbFragments = random.count(50);
  const ipUInt64 fragmentsSize = random.upTo(10);
  buffer->init(anyDataType(random), nbFragments, fragmentsSize);
  for (ipUInt64 i = 0; i < nbFragments; ++i)
    fill(random, buffer->getDataType(), buffer->getDataPtr(i), fragmentsSize * buffer->getBufferBaseSize());
  if (random.isOneIn(2) && nbFragments != 0)
    buffer->rollUpFragments();
  return buffer;
}

/// By class. The other classes have their samples only.
const Makers& getMakers()
{
  static const Makers g_makers = []
  {
    Makers makers = {
        {"orvel::DataIdentifier",
         [](Random&)
         {
           return boost::make_shared<DataIdentifier>();
         }},
        {"orvel::DoubleIdentifier",
         [](Random& random)
         {
           return boost::make_shared<DoubleIdentifier>(random.get<ipUInt32>(), random.get<ipUInt32>());
         }},
        {"orvel::ElementsRange",
         [](Random& random)
         {
           return boost::make_shared<ElementsRange>(random.get<ipUInt64>(), random.get<ipUInt64>());
         }},
        {"orvel::FragHybridBuffer", makeFragments},
        {"orvel::GeometricCalibration", makeCalibration},
        {"orvel::HybridBuffer", makeTypedBuffer<HybridBuffer>},
        {"orvel::KernelXY", makeKernel<KernelXY>},
        {"orvel::KernelXYZ", makeKernel<KernelXYZ>},
        {"orvel::OffsetXY", makeOffset<OffsetXY>},
        {"orvel::OffsetXYZ", makeOffset<OffsetXYZ>},
        {"orvel::PlanIndex",
         [](Random& random)
         {
           return boost::make_shared<PlanIndex>(random.get<ipUInt64>(), random.get<ipUInt64>(),
                                                random.get<ipUInt64>());
         }},
        {"orvel::SingleIdentifier",
         [](Random& random)
         {
           return boost::make_shared<SingleIdentifier>(random.get<ipUInt32>());
         }},
        {"orvel::StringIdentifier",
         [](Random& random)
         {
           return boost::make_shared<StringIdentifier>(random.get<std::string>());
         }},
        {"orvel::StructuringElementXY", makeElementOf<StructuringElementXY>},
        {"orvel::StructuringElementXYInfo", makePlanarInfo},
        {"orvel::StructuringElementXYZ", makeElementOf<StructuringElementXYZ>},
        {"orvel::StructuringElementXYZInfo", makeSpatialInfo},
        {"orvel::TypedOwnBuffer", makeTypedBuffer<TypedOwnBuffer>},
    };
#define ORVEL_TEST_MAKE_LEAVES(Type, Name, text)                                                             \
  makers[DataItemLeaf<Type>::getTypeName()] = makeLeaf<Type>;                                                \
  makers[DataItemLeafColl<Type>::getTypeName()] = makeLeafColl<Type>;
    ORVEL_FOR_EACH_VALUE_TYPE(ORVEL_TEST_MAKE_LEAVES)
#undef ORVEL_TEST_MAKE_LEAVES
#define ORVEL_TEST_MAKE_BUFFER(Name) makers[TOwnBuffer<ip##Name>::getTypeName()] = makeOwnBuffer<ip##Name>;
    ORVEL_FOR_EACH_ELEMENT_TYPE(ORVEL_TEST_MAKE_BUFFER)
#undef ORVEL_TEST_MAKE_BUFFER
    return makers;
  }();
  return g_makers;
}

SerializationObjectPtr makeObjectOf(const std::string& className, Random& random)
{
  const auto found = getMakers().find(className);
  if (found != getMakers().end() && !random.isOneIn(10))
    return found->second(random);
  const std::vector<Sample> samples = samplesOf(className);
  return samples[random.upTo(samples.size() - 1)].makeAgain();
}

// Trees

/// Returns an item within so many maps.
DataItemPtr wrap(DataItemPtr item, ipUInt64 nbMaps)
{
  for (ipUInt64 i = 0; i < nbMaps; ++i)
  {
    auto map = boost::make_shared<DataItemMap>();
    map->insertItem("inner", item);
    item = map;
  }
  return item;
}

/// Makes trees; what it has made it uses again now and then.
class Forest
{
public:
  explicit Forest(ipUInt64 seed)
    : _random(seed)
  {
  }

  Random& getRandom() { return _random; }

  /// Returns an object of any class that can be written.
  SerializationObjectPtr makeAny(int height)
  {
    if (!_made.empty() && _random.isOneIn(4))
      return _made[_random.upTo(_made.size() - 1)];
    const SerializationObjectPtr object = _random.isOneIn(3) ? makeItem(height) : makeAlone();
    _made.push_back(object);
    return object;
  }

  boost::shared_ptr<PtrColl> makePtrColl()
  {
    Objects objects;
    for (ipUInt64 i = _random.count(300); i != 0; --i)
      objects.push_back(_random.isOneIn(8) ? nullptr : makeAny(3));
    return boost::make_shared<PtrColl>(false, objects);
  }

  boost::shared_ptr<PlanColl> makePlanColl()
  {
    auto coll = boost::make_shared<PlanColl>();
    for (ipUInt64 i = _random.count(100); i != 0; --i)
    {
      const PlanIndex plan(_random.get<ipUInt64>(), _random.upTo(2), _random.upTo(2));
      if (!coll->exists(plan))
        coll->insert(plan, makeAny(3));
    }
    return coll;
  }

  DataItemPtr makeItem(int height)
  {
    if (!_items.empty() && _random.isOneIn(5))
      return _items[_random.upTo(_items.size() - 1)];
    DataItemPtr item = makeNewItem(height);
    if (_random.isOneIn(15)) // some become deeper than archives take
      item = wrap(item, _random.upTo(130));
    _items.push_back(item);
    return item;
  }

private:
  SerializationObjectPtr makeAlone()
  {
    const std::string name = g_classes[_random.upTo(std::size(g_classes) - 1)].name;
    return name == g_unwritten ? makeAlone() : makeObjectOf(name, _random);
  }

  boost::shared_ptr<SampleNode> makeNode()
  {
    return makeSampleNode(_random.get<ipInt32>(), _random.get<std::string>());
  }

  DataItemPtr makeNewItem(int height)
  {
    const ipUInt64 kind = _random.upTo(height > 0 ? 5 : 3);
    if (kind == 0)
      return makeNode();
    if (kind == 1)
    {
      auto coll = boost::make_shared<BaseDataItemNodeColl>();
      boost::shared_ptr<SampleNode> node;
      for (ipUInt64 i = _random.count(50); i != 0; --i)
      {
        if (!node || !_random.isOneIn(4)) // else the same again
          node = makeNode();
        coll->push_back(node);
      }
      return coll;
    }
    if (kind <= 3)
      return makeAnyLeaf(_random);
    auto map = boost::make_shared<DataItemMap>();
    for (ipUInt64 i = _random.count(30); i != 0; --i)
    {
      const auto name = _random.get<std::string>();
      if (!map->existsItem(name))
        map->insertItem(name, makeItem(height - 1));
    }
    return map;
  }

  Random _random;
  std::vector<SerializationObjectPtr> _made;
  std::vector<DataItemPtr> _items;
};

// Archives

struct Xml
{
  using OArchive = XmlOArchive;
  using IArchive = XmlIArchive;
};

struct Binary
{
  using OArchive = BinaryOArchive;
  using IArchive = BinaryIArchive;
};

template <class Format>
std::string fileOf(const BaseSerializationObject& object)
{
  std::ostringstream stream;
  typename Format::OArchive archive(stream);
  archive.writeObject("object", object);
  archive.close();
  return stream.str();
}

/// Expects that an object comes back from an archive of the format, if it takes the object.
/// \return whether it does
template <class Format>
bool expectBack(const BaseSerializationObject& object)
{
  std::string file;
  try
  {
    file = fileOf<Format>(object);
  }
  catch (const BaseException&)
  {
    return false;
  }
  for (const bool isUntrusted : {false, true})
  {
    std::istringstream stream(file);
    typename Format::IArchive archive(stream);
    archive.setUntrusted(isUntrusted);
    const auto copy = boost::dynamic_pointer_cast<BaseSerializationObject>(object.createShared());
    EXPECT_NO_THROW({
      archive.readObject("object", *copy);
      archive.close();
    }) << "untrusted: "
       << isUntrusted;
    EXPECT_TRUE(fileOf<Format>(*copy) == file) << "untrusted: " << isUntrusted;
    EXPECT_TRUE(fileOf<Binary>(*copy) == fileOf<Binary>(object)) << "every bit, untrusted: " << isUntrusted;
  }
  return true;
}

/// \return whether both formats take it, which they have to agree on
bool expectBackFromBoth(const BaseSerializationObject& object)
{
  const bool isTaken = expectBack<Binary>(object);
  EXPECT_EQ(expectBack<Xml>(object), isTaken);
  return isTaken;
}

constexpr ipUInt64 g_rounds = 40; // for each class
constexpr ipUInt64 g_trees = 150; // of each kind

TEST(RoundTrip, BringsObjectsOfEveryClassBack)
{
  Random random(1);
  for (const ClassRow& row : g_classes)
  {
    const std::string name = row.name;
    for (ipUInt64 i = 0; i < g_rounds && !HasFailure(); ++i)
    {
      SCOPED_TRACE(name + ", object " + std::to_string(i));
      const SerializationObjectPtr object = makeObjectOf(name, random);
      EXPECT_EQ(expectBackFromBoth(*object), name != g_unwritten);
      EXPECT_EQ(expectBackFromBoth(PtrColl(false, {object})), name != g_unwritten);
    }
  }
}

/// Expects that what make() returns for many seeds comes back, and that archives take most of it.
template <class Make>
void expectMostBack(Make make)
{
  ipUInt64 nbTaken = 0;
  for (ipUInt64 seed = 0; seed < g_trees && !testing::Test::HasFailure(); ++seed)
  {
    SCOPED_TRACE("seed " + std::to_string(seed));
    Forest forest(seed);
    nbTaken += expectBackFromBoth(*make(forest)) ? 1 : 0;
  }
  EXPECT_GT(nbTaken, g_trees * 3 / 4);
}

TEST(RoundTrip, BringsTreesOfItemsBack)
{
  expectMostBack([](Forest& forest) { return forest.makeItem(5); });
}

TEST(RoundTrip, BringsCollectionsOfSharedObjectsBack)
{
  expectMostBack([](Forest& forest) { return forest.makePtrColl(); });
}

TEST(RoundTrip, BringsSharedItemsBackUpToTheLimitOfDepth)
{
  const DataItemPtr shared = wrap(boost::make_shared<DataItemLeafColl<ipInt8>>(), 49); // 50 objects deep
  for (ipUInt64 depth = 120; depth <= 136; ++depth)
  {
    DataItemMap map;
    map.insertItem("first", shared);
    map.insertItem("then", wrap(shared, depth - 51)); // the same, deeper
    EXPECT_EQ(expectBackFromBoth(map), depth <= 128) << depth;
  }
}

// Each takes 16 million bytes that nothing in the archive fills, of 64 MiB that are allowed.
TEST(RoundTrip, BringsEmptyFragmentsBackUpToTheLimit)
{
  Objects buffers;
  for (const bool isTaken : {true, true, true, true, false, false})
  {
    auto buffer = boost::make_shared<FragHybridBuffer>();
    buffer->init(eDataType::eDT_Int16, 2000000, 0);
    buffers.push_back(buffer);
    EXPECT_EQ(expectBackFromBoth(PtrColl(false, buffers)), isTaken) << buffers.size();
  }
}

TEST(RoundTrip, BringsPlansBack)
{
  expectMostBack([](Forest& forest) { return forest.makePlanColl(); });
}

} // namespace
