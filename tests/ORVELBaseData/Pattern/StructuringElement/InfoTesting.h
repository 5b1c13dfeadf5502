#pragma once

/// \file
/// \brief What the tests of descriptions need on both kinds of them.
///
/// Coordinates and half sizes are given for x, y and z, angles as theta and phi; a description of the plane
/// takes x, y and theta.

#include <functional>
#include <type_traits>
#include <vector>

#include "ElementTesting.h"
#include <ORVELBaseData/Pattern/StructuringElement/StructuringElementXYInfo.h>
#include <ORVELBaseData/Pattern/StructuringElement/StructuringElementXYZInfo.h>

namespace orvel::test
{

template <class InfoType>
struct InfoTraits
{
  static constexpr bool isPlanar = std::is_same<InfoType, StructuringElementXYInfo>::value;
  using Element = std::conditional_t<isPlanar, StructuringElementXY, StructuringElementXYZ>;

  static constexpr const char* name = isPlanar ? "StructuringElementXYInfo" : "StructuringElementXYZInfo";

  static ipUInt64 kindOf(const InfoType& info)
  {
    if constexpr (isPlanar)
      return info.getSEXYSubType().getValue();
    else
      return info.getSEXYZSubType().getValue();
  }

  static void initBall(InfoType& info, double radius)
  {
    if constexpr (isPlanar)
      info.initCircular(radius);
    else
      info.initSpherical(radius);
  }

  static void initCube(InfoType& info, ipUInt32 halfSize)
  {
    if constexpr (isPlanar)
      info.initSquare(halfSize);
    else
      info.initCubic(halfSize);
  }

  static void initBox(InfoType& info, ipUInt32 x, ipUInt32 y, [[maybe_unused]] ipUInt32 z)
  {
    if constexpr (isPlanar)
      info.initRectangular(x, y);
    else
      info.initRectangular(x, y, z);
  }

  static void initHalfLinear(InfoType& info, double theta, [[maybe_unused]] double phi, double radius)
  {
    if constexpr (isPlanar)
      info.initHalfLinear(theta, radius);
    else
      info.initHalfLinear(theta, phi, radius);
  }

  static void initLinear(InfoType& info, double theta, [[maybe_unused]] double phi, double radius)
  {
    if constexpr (isPlanar)
      info.initLinear(theta, radius);
    else
      info.initLinear(theta, phi, radius);
  }

  static bool insert(InfoType& info, ipInt32 x, ipInt32 y, [[maybe_unused]] ipInt32 z)
  {
    if constexpr (isPlanar)
      return info.insert(x, y);
    else
      return info.insert(x, y, z);
  }

  static bool remove(InfoType& info, ipInt32 x, ipInt32 y, [[maybe_unused]] ipInt32 z)
  {
    if constexpr (isPlanar)
      return info.remove(x, y);
    else
      return info.remove(x, y, z);
  }
};

/// \brief Everything that every initialised description answers.
struct InfoState
{
  bool isInitialized;
  ipUInt64 kind;
  ElementState element;

  friend bool operator==(const InfoState& left, const InfoState& right)
  {
    return left.isInitialized == right.isInitialized && left.kind == right.kind &&
           left.element == right.element;
  }
};

template <class Info>
InfoState stateOfInfo(const Info& info)
{
  if (!info.isInitialized())
    return {false, 0, {}};
  return {true, InfoTraits<Info>::kindOf(info), stateOf(*info.getStructuringElement())};
}

/// \brief A square or cube of half size 1.
template <class Info>
Info makeCube()
{
  Info info;
  InfoTraits<Info>::initCube(info, 1);
  return info;
}

/// \brief The initialisations but init(), which take a new element: one of each kind, in the order of the
/// kinds.
template <class Info>
std::vector<std::function<void(Info&)>> newElementInitialisations()
{
  using Traits = InfoTraits<Info>;
  return {[](Info& info) { info.initEmpty(); },
          [](Info& info) { Traits::initBall(info, 1.5); },
          [](Info& info) { Traits::initCube(info, 2); },
          [](Info& info) { Traits::initBox(info, 2, 1, 0); },
          [](Info& info) { Traits::initHalfLinear(info, 0.5, 1, 3); },
          [](Info& info)
          {
            Traits::initLinear(info, 0.5, 1, 3);
          }};
}

} // namespace orvel::test
