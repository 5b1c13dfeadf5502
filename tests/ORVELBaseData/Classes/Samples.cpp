#include "Samples.h"

#include <cstring>
#include <limits>
#include <map>
#include <sstream>
#include <tuple>
#include <utility>

#include <boost/make_shared.hpp>

#include <ORVELBaseData/Buffer/BufferUtils.h>
#include <ORVELBaseData/Buffer/ExternalBuffer.h>
#include <ORVELBaseData/Buffer/FragHybridBuffer.h>
#include <ORVELBaseData/Buffer/HybridBuffer.h>
#include <ORVELBaseData/Buffer/TOwnBuffer.h>
#include <ORVELBaseData/Buffer/TypedOwnBuffer.h>
#include <ORVELBaseData/Calibration/GeometricCalibration.h>
#include <ORVELBaseData/DataItem/DataItemUtils.h>
#include <ORVELBaseData/DataItem/Leaf/BaseDataItemEnumLeaf.h>
#include <ORVELBaseData/DataItem/Leaf/DataItemLeaf.h>
#include <ORVELBaseData/DataItem/LeafColl/DataItemLeafColl.h>
#include <ORVELBaseData/DataItem/Map/DataItemMap.h>
#include <ORVELBaseData/DataItem/NodeColl/BaseDataItemNodeColl.h>
#include <ORVELBaseData/Identifier/DataIdentifier.h>
#include <ORVELBaseData/Identifier/DoubleIdentifier.h>
#include <ORVELBaseData/Identifier/SingleIdentifier.h>
#include <ORVELBaseData/Identifier/StringIdentifier.h>
#include <ORVELBaseData/Pattern/Kernel/KernelXY.h>
#include <ORVELBaseData/Pattern/Kernel/KernelXYZ.h>
#include <ORVELBaseData/Pattern/OffsetXY.h>
#include <ORVELBaseData/Pattern/OffsetXYZ.h>
#include <ORVELBaseData/Pattern/StructuringElement/StructuringElementInfoUtils.h>
#include <ORVELBaseData/Pattern/StructuringElement/StructuringElementUtils.h>
#include <ORVELBaseData/PlanIndex/PlanIndex.h>
#include <ORVELBaseData/Range/ElementsRange.h>
#include <ORVELSerialization/SerializationItems.h>
#include <ORVELSerialization/XmlArchive.h>
#include <support/SampleNode.h>

namespace orvel::test
{

namespace
{

/// \param make returns a new object of the value, each time
template <class T, class Make, class Equals>
Sample makeSampleBy(Make make, Equals equals)
{
  const boost::shared_ptr<T> object = make();
  Sample sample;
  sample.object = object;
  sample.makeAgain = make;
  sample.equals = [=](const BaseSerializationObject& other)
  {
    const T* const typed = dynamic_cast<const T*>(&other);
    return typed != nullptr && equals(*object, *typed);
  };
  sample.copyConstruct = [=]
  {
    return boost::make_shared<T>(*object);
  };
  sample.assignTo = [=](BaseSerializationObject& target)
  {
    dynamic_cast<T&>(target) = *object;
  };
  return sample;
}

template <class T, class Equals>
Sample makeSample(const T& value, Equals equals)
{
  return makeSampleBy<T>([=] { return boost::make_shared<T>(value); }, equals);
}

template <class T>
Sample makeSample(const T& value)
{
  return makeSample(value, [](const T& left, const T& right) { return left == right; });
}

std::vector<Sample> makeCalibrationSamples()
{
  constexpr ipReal32 largest = std::numeric_limits<ipReal32>::max();
  constexpr ipReal32 smallest = std::numeric_limits<ipReal32>::denorm_min();
  return {makeSample(*createGeometricCalibration3d(0.5F, 0.25F, 2.0F, "mm", -1.5F, 2.25F, 1000.0F, 0.5F,
                                                   -0.5F, 0.25F, 0.75F)),
          makeSample(GeometricCalibration()), // no rotation at all
          makeSample(*createGeometricCalibration3d(largest, smallest, 0.1F, "\xC2\xB5m", -largest, -smallest,
                                                   -0.0F, 1.0F / 3.0F, 0.0F, -1.0F, 2.0F))};
}

// Kernels have no comparison of their own.

auto valuesOf(const KernelXY& kernel)
{
  return std::make_tuple(kernel.getDataColl(), kernel.getMinX(), kernel.getMinY(), kernel.getSizeX(),
                         kernel.getSizeY(), kernel.getCoefSum(), kernel.getAbsCoefSum());
}

auto valuesOf(const KernelXYZ& kernel)
{
  return std::make_tuple(kernel.getDataColl(), kernel.getMinX(), kernel.getMinY(), kernel.getMinZ(),
                         kernel.getSizeX(), kernel.getSizeY(), kernel.getSizeZ(), kernel.getCoefSum(),
                         kernel.getAbsCoefSum());
}

template <class Kernel>
Sample makeKernelSample(const Kernel& kernel)
{
  return makeSample(kernel, [](const Kernel& left, const Kernel& right)
                    { return valuesOf(left) == valuesOf(right); });
}

KernelXY makeKernelXY()
{
  KernelXY kernel;
  kernel.insert(OffsetXY(0, 0), 0.5F);
  kernel.insert(OffsetXY(-1, 2), -1.25F);
  kernel.insert(OffsetXY(3, 0), 2.0F);
  return kernel;
}

KernelXYZ makeKernelXYZ()
{
  KernelXYZ kernel;
  kernel.insert(OffsetXYZ(0, 0, 0), 0.5F);
  kernel.insert(OffsetXYZ(-1, 2, 1), -1.25F);
  kernel.insert(OffsetXYZ(3, 0, -2), 2.0F);
  return kernel;
}

template <class Kernel>
std::vector<Sample> makeKernelSamples(const Kernel& kernel)
{
  Kernel emptied = kernel; // minimum 2147483647 and size 2 on every axis
  while (emptied.getNbData() != 0)
    emptied.remove(emptied.getDataColl().begin()->first);
  return {makeKernelSample(kernel), makeKernelSample(Kernel()), makeKernelSample(emptied)};
}

// Buffers are compared by what they hold, whoever owns it.

std::string bytesOf(const BaseBlockBuffer& buffer)
{
  return std::string(static_cast<const char*>(buffer.getDataPtr()), buffer.getMemorySize());
}

std::string bytesOf(const BaseFragBuffer& buffer)
{
  const ipUInt64 sizeInBytes = buffer.getFragmentsSize() * buffer.getBufferBaseSize();
  std::string bytes = std::to_string(buffer.getNbFragments()) + " fragments: ";
  for (const void* const fragment : buffer.getBufferPtrColl())
    bytes.append(static_cast<const char*>(fragment), sizeInBytes);
  return bytes;
}

/// \param fill is called with a new buffer that is not initialised
template <class Buffer, class Fill>
Sample makeBufferSample(Fill fill)
{
  return makeSampleBy<Buffer>(
      [=]
      {
        auto buffer = boost::make_shared<Buffer>();
        fill(*buffer);
        return buffer;
      },
      [](const Buffer& left, const Buffer& right)
      {
        if (!left.isInitialized() || !right.isInitialized())
          return left.isInitialized() == right.isInitialized();
        return left.getSize() == right.getSize() && left.getDataType() == right.getDataType() &&
               bytesOf(left) == bytesOf(right);
      });
}

constexpr const char* g_notInitialized = "Buffer should be initialized before used";

void leaveUninitialized(const BaseBuffer&)
{
}

template <class T>
std::vector<Sample> makeOwnBufferSamples()
{
  using Buffer = TOwnBuffer<T>;
  return {makeBufferSample<Buffer>(
              [](Buffer& buffer)
              {
                buffer.init(3);
                auto* const elements = static_cast<T*>(buffer.getDataPtr());
                elements[0] = T(1);
                elements[1] = T(0);
                elements[2] =
                    static_cast<T>(-2); // true for bool, two below the largest number for unsigned types
              }),
          makeBufferSample<Buffer>(leaveUninitialized),
          makeBufferSample<Buffer>([](Buffer& buffer) { buffer.init(0); })};
}

std::vector<Sample> makeTypedOwnBufferSamples()
{
  using Buffer = TypedOwnBuffer;
  const auto filled = [](const eDataType& dataType, ipUInt64 size)
  {
    return makeBufferSample<Buffer>(
        [=](Buffer& buffer)
        {
          buffer.init(size, dataType);
          std::memset(buffer.getDataPtr(), 0x41, buffer.getMemorySize());
        });
  };
  return {filled(eDataType::eDT_Int16, 5), filled(eDataType::eDT_Int8, 10),
          makeBufferSample<Buffer>(leaveUninitialized), filled(eDataType::eDT_Real64, 0)};
}

/// A view takes what it is given, but only from a buffer that looks at something; nothing of it is filed.
std::vector<Sample> makeExternalBufferSamples()
{
  using Buffer = ExternalBuffer;
  static ipInt16 g_memory[] = {1, -2, 300};
  std::vector<Sample> samples = {makeBufferSample<Buffer>([](Buffer& buffer) { buffer.init(3, g_memory); }),
                                 makeBufferSample<Buffer>([](Buffer& buffer) { buffer.init(2, g_memory); }),
                                 makeBufferSample<Buffer>(leaveUninitialized)};
  samples.back().copyFailure = [](const BaseSerializationObject&)
  {
    return g_notInitialized;
  };
  for (Sample& sample : samples)
    sample.isFiled = false;
  return samples;
}

/// The target decides what a copy is, which one that is not initialised cannot.
std::vector<Sample> makeHybridBufferSamples()
{
  using Buffer = HybridBuffer;
  static ipReal32 g_memory[] = {0.5F, -1.25F};
  std::vector<Sample> samples = {makeBufferSample<Buffer>(
                                     [](Buffer& buffer)
                                     {
                                       buffer.init(2, eDataType::eDT_UInt32);
                                       setBufferValues(70000.0, buffer.getDataType(), buffer.getSize(),
                                                       buffer.getDataPtr());
                                     }),
                                 makeBufferSample<Buffer>([](Buffer& buffer) { buffer.init(2, g_memory); }),
                                 makeBufferSample<Buffer>(leaveUninitialized)};
  for (Sample& sample : samples)
    if (dynamic_cast<const Buffer&>(*sample.object).isInitialized())
      sample.copyFailure = [](const BaseSerializationObject& target)
      {
        return dynamic_cast<const Buffer&>(target).isInitialized() ? "" : g_notInitialized;
      };
  return samples;
}

std::vector<Sample> makeFragHybridBufferSamples()
{
  using Buffer = FragHybridBuffer;
  static ipUInt8 g_memory[] = {1, 2, 3, 4, 5, 6};
  std::vector<Sample> samples = {
      makeBufferSample<Buffer>(
          [](Buffer& buffer)
          {
            buffer.init(eDataType::eDT_Int16, 3, 2);
            auto* const elements = static_cast<ipInt16*>(buffer.getDataPtr(0));
            for (ipInt16 i = 0; i < 6; ++i)
              elements[i] = static_cast<ipInt16>(100 * i);
            buffer.rollUpFragments(); // filed as 200 300 400 500 0 100
          }),
      makeBufferSample<Buffer>(
          [](Buffer& buffer) {
            buffer.init(eDataType::eDT_UInt8, {g_memory + 4, g_memory}, 2);
          }),
      makeBufferSample<Buffer>([](Buffer& buffer) { buffer.init(eDataType::eDT_UInt8, {}, 4); }),
      makeBufferSample<Buffer>(leaveUninitialized)};
  samples.front().isChangedByItself = true; // the fragments go back into the order of the block
  return samples;
}

// Data items are compared as trees.

/// \param fill is called with a new item
template <class Item, class Fill>
Sample makeItemSample(Fill fill)
{
  return makeSampleBy<Item>(
      [=]
      {
        auto item = boost::make_shared<Item>();
        fill(*item);
        return item;
      },
      [](const Item& left, const Item& right) { return orvel::equal(left, right, 0.0); });
}

template <class T>
std::vector<Sample> makeLeafSamples(const T& first, const T& second)
{
  using Leaf = DataItemLeaf<T>;
  return {makeItemSample<Leaf>([=](Leaf& leaf) { leaf.setValue(first); }),
          makeItemSample<Leaf>([=](Leaf& leaf) { leaf.setValue(second); })};
}

template <class T>
std::vector<Sample> makeLeafCollSamples(const T& first, const T& second)
{
  using Coll = DataItemLeafColl<T>;
  return {makeItemSample<Coll>(
              [=](Coll& coll) {
                coll.getColl() = {first, second, first};
              }),
          makeItemSample<Coll>([](Coll&) {}),
          makeItemSample<Coll>([=](Coll& coll) { coll.push_back(second); })};
}

/// It knows no enumeration, so it has no text to file.
std::vector<Sample> makeEnumLeafSamples()
{
  using Leaf = BaseDataItemEnumLeaf;
  const auto leafOf = [](ipUInt32 value)
  {
    Sample sample = makeSampleBy<Leaf>(
        [=]
        {
          auto leaf = boost::make_shared<Leaf>();
          leaf->setEnumValue(value);
          return leaf;
        },
        [](const Leaf& left, const Leaf& right) { return left.getEnumValue() == right.getEnumValue(); });
    sample.fileFailure = "Invalid enumerate integer value " + std::to_string(value) + " for enumerate ";
    return sample;
  };
  return {leafOf(5), leafOf(0)};
}

template <class T>
DataItemPtr makeLeaf(const T& value)
{
  auto leaf = boost::make_shared<DataItemLeaf<T>>();
  leaf->setValue(value);
  return leaf;
}

std::vector<Sample> makeMapSamples()
{
  using Map = DataItemMap;
  std::vector<Sample> samples = {
      makeItemSample<Map>(
          [](Map& map)
          {
            const auto inner = boost::make_shared<Map>();
            inner->insertItem("sigma", makeLeaf<ipReal64>(1.5));
            map.insertItem("inner", inner);
            map.insertItem("Count", makeLeaf<ipInt32>(-3));
            map.insertItem("node", makeSampleNode(7, "seven"));
          }),
      makeItemSample<Map>([](Map& map) { map.insertItem("", makeLeaf<std::string>("unnamed")); }),
      makeItemSample<Map>([](Map&) {})};
  samples[0].isChangedByItself = true; // emptied
  samples[1].isChangedByItself = true;
  return samples;
}

std::vector<Sample> makeNodeCollSamples()
{
  using Coll = BaseDataItemNodeColl;
  std::vector<Sample> samples = {makeItemSample<Coll>(
                                     [](Coll& coll)
                                     {
                                       coll.push_back(makeSampleNode(1, "one"));
                                       coll.push_back(makeSampleNode(2, "two"));
                                     }),
                                 makeItemSample<Coll>([](Coll&) {})};
  samples[0].isChangedByItself = true; // emptied
  return samples;
}

// Identifiers have no comparison of their own.

template <class Identifier, class Make>
Sample makeIdentifierSample(Make make)
{
  return makeSampleBy<Identifier>([=] { return boost::make_shared<Identifier>(make()); },
                                  [](const Identifier& left, const Identifier& right)
                                  { return left.getValue() == right.getValue(); });
}

std::vector<Sample> makeDoubleIdentifierSamples()
{
  const auto identifierOf = [](ipUInt32 high, ipUInt32 low)
  {
    return makeSampleBy<DoubleIdentifier>([=] { return boost::make_shared<DoubleIdentifier>(high, low); },
                                          [](const DoubleIdentifier& left, const DoubleIdentifier& right) {
                                            return left.getHighValue() == right.getHighValue() &&
                                                   left.getLowValue() == right.getLowValue();
                                          });
  };
  return {identifierOf(1, 2), identifierOf(2, 1), identifierOf(4294967295U, 0)};
}

/// The identifier of a new object is a random one: this one is known.
DataIdentifier makeDataIdentifier(const std::string& guid, const std::string& name)
{
  std::istringstream file("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<orvelArchive format=\"1\">"
                          "<object key=\"object\"><item key=\"_guid\">" +
                          guid +
                          "</item><section name=\"orvel::DataIdentifier\"><item key=\"version\">1</item>"
                          "</section><item key=\"_name\">" +
                          name + "</item></object></orvelArchive>");
  XmlIArchive archive(file);
  DataIdentifier identifier;
  archive.readObject("object", identifier);
  archive.close();
  return identifier;
}

std::vector<Sample> makeDataIdentifierSamples()
{
  const auto identifierOf = [](const std::string& guid, const std::string& name)
  {
    const DataIdentifier identifier = makeDataIdentifier(guid, name);
    return makeSampleBy<DataIdentifier>([=] { return boost::make_shared<DataIdentifier>(identifier); },
                                        [](const DataIdentifier& left, const DataIdentifier& right) {
                                          return left.getGuid() == right.getGuid() &&
                                                 left.getName() == right.getName();
                                        });
  };
  return {identifierOf("01234567-89ab-cdef-0123-456789abcdef", "cells"),
          identifierOf("01234567-89ab-cdef-0123-456789abcdef", ""),
          identifierOf("00000000-0000-0000-0000-000000000001", "cells")};
}

// Structuring elements and their descriptions have no comparison of their own.

auto valuesOf(const StructuringElementXY& element)
{
  return std::make_tuple(element.getDataColl(), element.getMinX(), element.getMinY(), element.getSizeX(),
                         element.getSizeY());
}

auto valuesOf(const StructuringElementXYZ& element)
{
  return std::make_tuple(element.getDataColl(), element.getMinX(), element.getMinY(), element.getMinZ(),
                         element.getSizeX(), element.getSizeY(), element.getSizeZ());
}

template <class Element>
std::vector<Sample> makeElementSamples(const std::vector<typename Element::OffsetType>& offsets)
{
  const auto sampleOf = [](const Element& element)
  {
    return makeSample(element, [](const Element& left, const Element& right)
                      { return valuesOf(left) == valuesOf(right); });
  };
  Element filled;
  for (const auto& offset : offsets)
    filled.insert(offset);
  Element emptied; // minimum 2147483647 and size 2 on every axis
  emptied.setDataColl({});
  return {sampleOf(filled), sampleOf(Element()), sampleOf(emptied)};
}

// The parameters that the shape has.

std::vector<double> parametersOf(const StructuringElementXYInfo& info)
{
  switch (info.getSEXYSubType().getDomain())
  {
  case eSEXYSubType::eSEXY_Generic:
    return {};
  case eSEXYSubType::eSEXY_Circular:
    return {info.getRadius()};
  case eSEXYSubType::eSEXY_Square: // whose half size no copy carries
    return {};
  case eSEXYSubType::eSEXY_Rectangular:
    return {static_cast<double>(info.getHalfSizeX()), static_cast<double>(info.getHalfSizeY())};
  default:
    return {info.getTheta(), info.getRadius()};
  }
}

std::vector<double> parametersOf(const StructuringElementXYZInfo& info)
{
  switch (info.getSEXYZSubType().getDomain())
  {
  case eSEXYZSubType::eSEXYZ_Generic:
    return {};
  case eSEXYZSubType::eSEXYZ_Spherical:
    return {info.getRadius()};
  case eSEXYZSubType::eSEXYZ_Cubic:
    return {static_cast<double>(info.getHalfSize())};
  case eSEXYZSubType::eSEXYZ_Rectangular:
    return {static_cast<double>(info.getHalfSizeX()), static_cast<double>(info.getHalfSizeY()),
            static_cast<double>(info.getHalfSizeZ())};
  default:
    return {info.getTheta(), info.getPhi(), info.getRadius()};
  }
}

ipUInt64 subTypeOf(const StructuringElementXYInfo& info)
{
  return info.getSEXYSubType().getValue();
}

ipUInt64 subTypeOf(const StructuringElementXYZInfo& info)
{
  return info.getSEXYZSubType().getValue();
}

/// \param fill is called with a new description
template <class Info, class Fill>
Sample makeInfoSample(Fill fill)
{
  return makeSampleBy<Info>(
      [=]
      {
        auto info = boost::make_shared<Info>();
        fill(*info);
        return info;
      },
      [](const Info& left, const Info& right)
      {
        if (!left.isInitialized() || !right.isInitialized())
          return left.isInitialized() == right.isInitialized();
        return subTypeOf(left) == subTypeOf(right) && parametersOf(left) == parametersOf(right) &&
               valuesOf(*left.getStructuringElement()) == valuesOf(*right.getStructuringElement());
      });
}

std::vector<Sample> makePlanarInfoSamples()
{
  using Info = StructuringElementXYInfo;
  std::vector<Sample> samples = {makeInfoSample<Info>(
                                     [](Info& info)
                                     {
                                       info.initCircular(1.5);
                                       info.insert(5,
                                                   -7); // the shape changes, its kind and its radius do not
                                     }),
                                 makeInfoSample<Info>([](Info&) {}),
                                 makeInfoSample<Info>([](Info& info) { info.initEmpty(); }),
                                 makeInfoSample<Info>([](Info& info) { info.init(*rectangularSEXY(1, 0)); }),
                                 makeInfoSample<Info>([](Info& info) { info.initSquare(2); }),
                                 makeInfoSample<Info>([](Info& info) { info.initRectangular(2, 1); }),
                                 makeInfoSample<Info>([](Info& info) { info.initHalfLinear(0.5, 3.0); }),
                                 makeInfoSample<Info>([](Info& info) { info.initLinear(0.5, 3.0); })};
  samples[4].isCopiedInPart = true; // without its half size
  return samples;
}

std::vector<Sample> makeSpatialInfoSamples()
{
  using Info = StructuringElementXYZInfo;
  return {makeInfoSample<Info>(
              [](Info& info)
              {
                info.initHalfLinear(0.5, 1.0, 3.0);
                info.insert(5, -7, 9);
              }),
          makeInfoSample<Info>([](Info&) {}),
          makeInfoSample<Info>([](Info& info) { info.initEmpty(); }),
          makeInfoSample<Info>([](Info& info) { info.init(*rectangularSEXYZ(1, 0, 0)); }),
          makeInfoSample<Info>([](Info& info) { info.initSpherical(1.5); }),
          makeInfoSample<Info>([](Info& info) { info.initCubic(2); }),
          makeInfoSample<Info>([](Info& info) { info.initRectangular(2, 1, 0); }),
          makeInfoSample<Info>([](Info& info) { info.initLinear(0.5, 1.0, 3.0); })};
}

const std::map<std::string, std::vector<Sample>>& getSamples()
{
  constexpr ipInt32 lowest = std::numeric_limits<ipInt32>::min();
  constexpr ipInt32 highest = std::numeric_limits<ipInt32>::max();
  constexpr ipUInt64 largest = std::numeric_limits<ipUInt64>::max();
  static const std::map<std::string, std::vector<Sample>> g_samples = {
      {"orvel::DataItemLeaf<ipBool>", makeLeafSamples<ipBool>(true, false)},
      {"orvel::DataItemLeaf<ipInt8>", makeLeafSamples<ipInt8>(-128, 127)},
      {"orvel::DataItemLeaf<ipUInt8>", makeLeafSamples<ipUInt8>(255, 0)},
      {"orvel::DataItemLeaf<ipInt16>", makeLeafSamples<ipInt16>(-300, 7)},
      {"orvel::DataItemLeaf<ipUInt16>", makeLeafSamples<ipUInt16>(65535, 1)},
      {"orvel::DataItemLeaf<ipInt32>", makeLeafSamples<ipInt32>(-70000, 3)},
      {"orvel::DataItemLeaf<ipUInt32>", makeLeafSamples<ipUInt32>(4000000000U, 3)},
      {"orvel::DataItemLeaf<ipInt64>", makeLeafSamples<ipInt64>(-5000000000, 9)},
      {"orvel::DataItemLeaf<ipUInt64>", makeLeafSamples<ipUInt64>(18446744073709551615U, 9)},
      {"orvel::DataItemLeaf<ipReal32>", makeLeafSamples<ipReal32>(0.1F, -2.5F)},
      {"orvel::DataItemLeaf<ipReal64>", makeLeafSamples<ipReal64>(0.1, -1e300)},
      {"orvel::DataItemLeaf<std::string>", makeLeafSamples<std::string>("a < b", "")},
      {"orvel::DataItemLeaf<boost::filesystem::path>",
       makeLeafSamples<boost::filesystem::path>("images/stack 1.tif", "")},
      {"orvel::DataItemLeafColl<ipBool>", makeLeafCollSamples<ipBool>(true, false)},
      {"orvel::DataItemLeafColl<ipInt8>", makeLeafCollSamples<ipInt8>(-128, 127)},
      {"orvel::DataItemLeafColl<ipUInt8>", makeLeafCollSamples<ipUInt8>(255, 0)},
      {"orvel::DataItemLeafColl<ipInt16>", makeLeafCollSamples<ipInt16>(-300, 7)},
      {"orvel::DataItemLeafColl<ipUInt16>", makeLeafCollSamples<ipUInt16>(65535, 1)},
      {"orvel::DataItemLeafColl<ipInt32>", makeLeafCollSamples<ipInt32>(-70000, 3)},
      {"orvel::DataItemLeafColl<ipUInt32>", makeLeafCollSamples<ipUInt32>(4000000000U, 3)},
      {"orvel::DataItemLeafColl<ipInt64>", makeLeafCollSamples<ipInt64>(-5000000000, 9)},
      {"orvel::DataItemLeafColl<ipUInt64>", makeLeafCollSamples<ipUInt64>(18446744073709551615U, 9)},
      {"orvel::DataItemLeafColl<ipReal32>", makeLeafCollSamples<ipReal32>(0.1F, -2.5F)},
      {"orvel::DataItemLeafColl<ipReal64>", makeLeafCollSamples<ipReal64>(0.1, -1e300)},
      {"orvel::DataItemLeafColl<std::string>", makeLeafCollSamples<std::string>("a < b", "")},
      {"orvel::DataItemLeafColl<boost::filesystem::path>",
       makeLeafCollSamples<boost::filesystem::path>("images/stack 1.tif", "")},
      {"orvel::BaseDataItemEnumLeaf", makeEnumLeafSamples()},
      {"orvel::BaseDataItemNodeColl", makeNodeCollSamples()},
      {"orvel::DataItemMap", makeMapSamples()},
      {"orvel::DataIdentifier", makeDataIdentifierSamples()},
      {"orvel::DoubleIdentifier", makeDoubleIdentifierSamples()},
      {"orvel::SingleIdentifier",
       {makeIdentifierSample<SingleIdentifier>([] { return SingleIdentifier(7); }),
        makeIdentifierSample<SingleIdentifier>([] { return SingleIdentifier(4294967295U); })}},
      {"orvel::StringIdentifier",
       {makeIdentifierSample<StringIdentifier>([] { return StringIdentifier("left eye"); }),
        makeIdentifierSample<StringIdentifier>([] { return StringIdentifier(); })}},
      {"orvel::ElementsRange",
       {makeSample(ElementsRange(3, 5000000000)), makeSample(ElementsRange()),
        makeSample(ElementsRange(largest, 1))}},
      {"orvel::ExternalBuffer", makeExternalBufferSamples()},
      {"orvel::FragHybridBuffer", makeFragHybridBufferSamples()},
      {"orvel::GeometricCalibration", makeCalibrationSamples()},
      {"orvel::HybridBuffer", makeHybridBufferSamples()},
      {"orvel::KernelXY", makeKernelSamples(makeKernelXY())},
      {"orvel::KernelXYZ", makeKernelSamples(makeKernelXYZ())},
      {"orvel::OffsetXY", {makeSample(OffsetXY(7, -300)), makeSample(OffsetXY(lowest, highest))}},
      {"orvel::OffsetXYZ",
       {makeSample(OffsetXYZ(7, -300, 70000)), makeSample(OffsetXYZ(lowest, highest, 0))}},
      {"orvel::PlanIndex",
       {makeSample(PlanIndex(3, 5000000000, 70000)), makeSample(PlanIndex(0, 0, 0)),
        makeSample(PlanIndex(largest, 1, 0))}},
      {"orvel::TOwnBuffer<orvel::ipBool>", makeOwnBufferSamples<ipBool>()},
      {"orvel::TOwnBuffer<orvel::ipInt8>", makeOwnBufferSamples<ipInt8>()},
      {"orvel::TOwnBuffer<orvel::ipUInt8>", makeOwnBufferSamples<ipUInt8>()},
      {"orvel::TOwnBuffer<orvel::ipInt16>", makeOwnBufferSamples<ipInt16>()},
      {"orvel::TOwnBuffer<orvel::ipUInt16>", makeOwnBufferSamples<ipUInt16>()},
      {"orvel::TOwnBuffer<orvel::ipInt32>", makeOwnBufferSamples<ipInt32>()},
      {"orvel::TOwnBuffer<orvel::ipUInt32>", makeOwnBufferSamples<ipUInt32>()},
      {"orvel::TOwnBuffer<orvel::ipInt64>", makeOwnBufferSamples<ipInt64>()},
      {"orvel::TOwnBuffer<orvel::ipUInt64>", makeOwnBufferSamples<ipUInt64>()},
      {"orvel::TOwnBuffer<orvel::ipReal32>", makeOwnBufferSamples<ipReal32>()},
      {"orvel::TOwnBuffer<orvel::ipReal64>", makeOwnBufferSamples<ipReal64>()},
      {"orvel::StructuringElementXY",
       makeElementSamples<StructuringElementXY>({OffsetXY(0, 0), OffsetXY(-1, 2), OffsetXY(3, 0)})},
      {"orvel::StructuringElementXYInfo", makePlanarInfoSamples()},
      {"orvel::StructuringElementXYZ", makeElementSamples<StructuringElementXYZ>(
                                           {OffsetXYZ(0, 0, 0), OffsetXYZ(-1, 2, 1), OffsetXYZ(3, 0, -2)})},
      {"orvel::StructuringElementXYZInfo", makeSpatialInfoSamples()},
      {"orvel::TypedOwnBuffer", makeTypedOwnBufferSamples()}};
  return g_samples;
}

// Old versions

/// Files items by hand under the name of a class.
class HandFiled : public BaseSerializationObject
{
public:
  HandFiled(std::string className, std::function<void(BaseOArchive&)> writeItems)
    : _className(std::move(className))
    , _writeItems(std::move(writeItems))
  {
  }

  const std::string& getClassName() const override { return _className; }
  BaseDynamicObject* createNew() const override { return nullptr; }
  DynamicObjectPtr createShared() const override { return nullptr; }
  bool hasCopySupport() const override { return false; }
  BaseDynamicObject* duplicate() const override { return nullptr; }
  DynamicObjectPtr duplicateShared() const override { return nullptr; }
  BoolResult write(BaseOArchive& archive) const override
  {
    _writeItems(archive);
    return BoolResult(true);
  }

private:
  std::string _className;
  std::function<void(BaseOArchive&)> _writeItems;
};

void fileVersion(BaseOArchive& archive, const std::string& className, ipUInt32 version)
{
  const ArchiveSectionManager section(archive, className);
  archive << SerializationOItem("version", version);
}

template <class T>
void fileItem(BaseOArchive& archive, const char* key, const T& value)
{
  archive << SerializationOItem<T>(key, value);
}

void fileElementsRange1(BaseOArchive& archive)
{
  fileVersion(archive, "orvel::ElementsRange", 1);
  fileItem<ipUInt32>(archive, "_startOffset", 3);
  fileItem<ipUInt32>(archive, "_nbElements", 4000000000U);
}

void filePlanIndex1(BaseOArchive& archive)
{
  fileVersion(archive, "orvel::PlanIndex", 1);
  fileItem<ipUInt32>(archive, "_zPlanIdx", 3);
  fileItem<ipUInt32>(archive, "_cPlanIdx", 4000000000U);
  fileItem<ipUInt32>(archive, "_tPlanIdx", 70000);
}

// Calibrations of version 1 had neither origin nor rotation.

void fileGeometricCalibration1(BaseOArchive& archive)
{
  fileVersion(archive, "orvel::GeometricCalibration", 1);
  fileItem<ipReal32>(archive, "_xScale", 0.5F);
  fileItem<ipReal32>(archive, "_yScale", 0.25F);
  fileItem<ipReal32>(archive, "_zScale", 2.0F);
  fileItem<std::string>(archive, "_unitStr", "mm");
}

// Kernels of version 1 had no sum of absolute values.

void fileKernelXY1(BaseOArchive& archive)
{
  fileVersion(archive, "orvel::BaseKernel", 1);
  fileVersion(archive, "orvel::KernelXY", 1);
  fileItem(archive, "_dataColl",
           std::map<OffsetXY, ipReal32>{{OffsetXY(0, 0), 1.5F}, {OffsetXY(1, 0), -0.5F}});
  fileItem<ipInt32>(archive, "_minX", 0);
  fileItem<ipInt32>(archive, "_minY", 0);
  fileItem<ipUInt32>(archive, "_sizeX", 2);
  fileItem<ipUInt32>(archive, "_sizeY", 1);
  fileItem<ipReal32>(archive, "_coefSum", 1.0F);
}

void fileKernelXYZ1(BaseOArchive& archive)
{
  fileVersion(archive, "orvel::BaseKernel", 1);
  fileVersion(archive, "orvel::KernelXYZ", 1);
  fileItem(archive, "_dataColl",
           std::map<OffsetXYZ, ipReal32>{{OffsetXYZ(0, 0, 0), 1.5F}, {OffsetXYZ(1, 0, 0), -0.5F}});
  fileItem<ipInt32>(archive, "_minX", 0);
  fileItem<ipInt32>(archive, "_minY", 0);
  fileItem<ipInt32>(archive, "_minZ", 0);
  fileItem<ipUInt32>(archive, "_sizeX", 2);
  fileItem<ipUInt32>(archive, "_sizeY", 1);
  fileItem<ipUInt32>(archive, "_sizeZ", 1);
  fileItem<ipReal32>(archive, "_coefSum", 1.0F);
}

/// What a kernel of version 1 with the coefficients 1.5 and -0.5 becomes: |v| + v each, the sum as it was
/// filed, no sum of absolute values.
template <class Kernel, class Values>
Sample makeKernelOfVersion1(Values values)
{
  Sample sample = makeKernelSample(Kernel());
  sample.equals = [=](const BaseSerializationObject& other)
  {
    const auto* const kernel = dynamic_cast<const Kernel*>(&other);
    return kernel != nullptr && valuesOf(*kernel) == values;
  };
  return sample;
}

} // namespace

std::vector<Sample> samplesOf(const std::string& className)
{
  const auto found = getSamples().find(className);
  return found == getSamples().end() ? std::vector<Sample>() : found->second;
}

std::vector<OldSample> oldSamplesOf(const std::string& className)
{
  const auto filed = [&](std::function<void(BaseOArchive&)> writeItems)
  {
    return boost::make_shared<HandFiled>(className, std::move(writeItems));
  };

  if (className == "orvel::ElementsRange")
    return {{1, filed(fileElementsRange1), makeSample(ElementsRange(3, 4000000000))}};
  if (className == "orvel::GeometricCalibration")
    return {{1, filed(fileGeometricCalibration1),
             makeSample(*createGeometricCalibration3d(0.5F, 0.25F, 2.0F, "mm", 0, 0, 0, 0, 0, 0, 0))}};
  if (className == "orvel::PlanIndex")
    return {{1, filed(filePlanIndex1), makeSample(PlanIndex(3, 4000000000, 70000))}};
  if (className == "orvel::KernelXY")
    return {{1, filed(fileKernelXY1),
             makeKernelOfVersion1<KernelXY>(
                 std::make_tuple(std::map<OffsetXY, ipReal32>{{OffsetXY(0, 0), 3.0F}, {OffsetXY(1, 0), 0.0F}},
                                 0, 0, 2U, 1U, 1.0F, 0.0F))}};
  if (className == "orvel::KernelXYZ")
    return {{1, filed(fileKernelXYZ1),
             makeKernelOfVersion1<KernelXYZ>(std::make_tuple(
                 std::map<OffsetXYZ, ipReal32>{{OffsetXYZ(0, 0, 0), 3.0F}, {OffsetXYZ(1, 0, 0), 0.0F}}, 0, 0,
                 0, 2U, 1U, 1U, 1.0F, 0.0F))}};
  return {};
}

} // namespace orvel::test
