#pragma once

/// \file
/// \brief What the tests of descriptions need on both kinds of them.
///
/// Coordinates and half sizes are given for x, y and z, angles as theta and phi; a description of the plane
/// takes x, y and theta.

#include <functional>
#include <string>
#include <vector>

#include "ElementTesting.h"
#include <ORVELBaseData/Pattern/StructuringElement/StructuringElementXYInfo.h>
#include <ORVELBaseData/Pattern/StructuringElement/StructuringElementXYZInfo.h>

namespace orvel::test
{

template <class Info>
struct InfoTraits;

template <>
struct InfoTraits<StructuringElementXYInfo>
{
  using Info = StructuringElementXYInfo;
  using Element = StructuringElementXY;
  static constexpr const char* name = "StructuringElementXYInfo";
  static constexpr const char* subTypeKey = "_seXYSubType";
  static constexpr const char* elementKey = "_pSEXY";
  static constexpr const char* subTypeTexts[] = {"eSEXY_Generic",     "eSEXY_Circular",   "eSEXY_Square",
                                                 "eSEXY_Rectangular", "eSEXY_HalfLinear", "eSEXY_Linear"};

  static ipUInt64 subTypeOf(const Info& info) { return info.getSEXYSubType().getValue(); }
  static void initBall(Info& info, double radius) { info.initCircular(radius); }
  static void initCube(Info& info, ipUInt32 halfSize) { info.initSquare(halfSize); }
  static void initBox(Info& info, ipUInt32 x, ipUInt32 y, ipUInt32 /*z*/) { info.initRectangular(x, y); }
  static void initHalfLinear(Info& info, double theta, double /*phi*/, double radius)
  {
    info.initHalfLinear(theta, radius);
  }
  static void initLinear(Info& info, double theta, double /*phi*/, double radius)
  {
    info.initLinear(theta, radius);
  }
  static bool insert(Info& info, ipInt32 x, ipInt32 y, ipInt32 /*z*/) { return info.insert(x, y); }
  static bool remove(Info& info, ipInt32 x, ipInt32 y, ipInt32 /*z*/) { return info.remove(x, y); }
};

template <>
struct InfoTraits<StructuringElementXYZInfo>
{
  using Info = StructuringElementXYZInfo;
  using Element = StructuringElementXYZ;
  static constexpr const char* name = "StructuringElementXYZInfo";
  static constexpr const char* subTypeKey = "_seXYZSubType";
  static constexpr const char* elementKey = "_pSEXYZ";
  static constexpr const char* subTypeTexts[] = {"eSEXYZ_Generic",     "eSEXYZ_Spherical",  "eSEXYZ_Cubic",
                                                 "eSEXYZ_Rectangular", "eSEXYZ_HalfLinear", "eSEXYZ_Linear"};

  static ipUInt64 subTypeOf(const Info& info) { return info.getSEXYZSubType().getValue(); }
  static void initBall(Info& info, double radius) { info.initSpherical(radius); }
  static void initCube(Info& info, ipUInt32 halfSize) { info.initCubic(halfSize); }
  static void initBox(Info& info, ipUInt32 x, ipUInt32 y, ipUInt32 z) { info.initRectangular(x, y, z); }
  static void initHalfLinear(Info& info, double theta, double phi, double radius)
  {
    info.initHalfLinear(theta, phi, radius);
  }
  static void initLinear(Info& info, double theta, double phi, double radius)
  {
    info.initLinear(theta, phi, radius);
  }
  static bool insert(Info& info, ipInt32 x, ipInt32 y, ipInt32 z) { return info.insert(x, y, z); }
  static bool remove(Info& info, ipInt32 x, ipInt32 y, ipInt32 z) { return info.remove(x, y, z); }
};

/// \brief Everything that every initialised description answers.
struct InfoState
{
  bool isInitialized;
  ipUInt64 subType;
  ElementState element;

  friend bool operator==(const InfoState& left, const InfoState& right)
  {
    return left.isInitialized == right.isInitialized && left.subType == right.subType &&
           left.element == right.element;
  }
};

template <class Info>
InfoState stateOfInfo(const Info& info)
{
  if (!info.isInitialized())
    return {false, 0, {}};
  return {true, InfoTraits<Info>::subTypeOf(info), stateOf(*info.getStructuringElement())};
}

/// \brief The initialisations but init(), which take a new element.
template <class Info>
std::vector<std::function<void(Info&)>> newElementInitialisations()
{
  using Traits = InfoTraits<Info>;
  return {[](Info& info) { info.initEmpty(); },
          [](Info& info) { Traits::initBall(info, 1); },
          [](Info& info) { Traits::initCube(info, 1); },
          [](Info& info) { Traits::initBox(info, 1, 0, 0); },
          [](Info& info) { Traits::initHalfLinear(info, 0.5, 1, 2.5); },
          [](Info& info)
          {
            Traits::initLinear(info, 0.5, 1, 2.5);
          }};
}

/// \brief The initialisations of shapes with a radius.
template <class Info>
std::vector<std::function<void(Info&, double)>> radiusInitialisations()
{
  using Traits = InfoTraits<Info>;
  return {[](Info& info, double radius) { Traits::initBall(info, radius); },
          [](Info& info, double radius) { Traits::initHalfLinear(info, 0.5, 1, radius); },
          [](Info& info, double radius)
          {
            Traits::initLinear(info, 0.5, 1, radius);
          }};
}

} // namespace orvel::test
