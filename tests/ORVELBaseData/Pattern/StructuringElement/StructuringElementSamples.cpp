// Samples of structuring elements and their descriptions, for the checks that all classes share.

#include <tuple>

#include <boost/make_shared.hpp>

#include "../../Classes/Samples.h"
#include <ORVELBaseData/Pattern/StructuringElement/StructuringElementInfoUtils.h>
#include <ORVELBaseData/Pattern/StructuringElement/StructuringElementUtils.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

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
  return {sampleOf(filled), asNew(sampleOf(Element())), sampleOf(emptied)};
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
                                 asNew(makeInfoSample<Info>([](Info&) {})),
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
          asNew(makeInfoSample<Info>([](Info&) {})),
          makeInfoSample<Info>([](Info& info) { info.initEmpty(); }),
          makeInfoSample<Info>([](Info& info) { info.init(*rectangularSEXYZ(1, 0, 0)); }),
          makeInfoSample<Info>([](Info& info) { info.initSpherical(1.5); }),
          makeInfoSample<Info>([](Info& info) { info.initCubic(2); }),
          makeInfoSample<Info>([](Info& info) { info.initRectangular(2, 1, 0); }),
          makeInfoSample<Info>([](Info& info) { info.initLinear(0.5, 1.0, 3.0); })};
}

const ClassSamples g_elementXY(
    "orvel::StructuringElementXY",
    [] {
      return makeElementSamples<StructuringElementXY>({OffsetXY(0, 0), OffsetXY(-1, 2), OffsetXY(3, 0)});
    });
const ClassSamples g_elementXYZ("orvel::StructuringElementXYZ",
                                []
                                {
                                  return makeElementSamples<StructuringElementXYZ>(
                                      {OffsetXYZ(0, 0, 0), OffsetXYZ(-1, 2, 1), OffsetXYZ(3, 0, -2)});
                                });
const ClassSamples g_infoXY("orvel::StructuringElementXYInfo", makePlanarInfoSamples);
const ClassSamples g_infoXYZ("orvel::StructuringElementXYZInfo", makeSpatialInfoSamples);

} // namespace
