#include "SampleClasses.h"

#include <stdexcept>
#include <tuple>

#include <boost/make_shared.hpp>

#include <ORVELSerialization/ItemOperators.h>
#include <ORVELSerialization/SerializableClassDefinitions.h>

namespace orvel::test
{

ORVEL_DEFINE_SERIALIZABLE_AS(TestPoint, "orvel::TestPoint", BaseSerializationObject, 3)

void TestPoint::copyMembers(const TestPoint& other)
{
  _x = other._x;
  _y = other._y;
}

void TestPoint::writeMembers(BaseOArchive& archive) const
{
  archive << SerializationOItem("_x", _x) << SerializationOItem("_y", _y);
}

void TestPoint::readMembers(BaseIArchive& archive, ipUInt32 version)
{
  archive >> SerializationIItem("_x", _x);
  if (version == 1)
    _y = _x;
  else
    archive >> SerializationIItem("_y", _y);
}

ORVEL_DEFINE_SERIALIZABLE_AS(TestNode, "orvel::TestNode", BaseSerializationObject, 1)

int TestNode::g_nbAlive = 0;

TestNode::TestNode()
{
  ++g_nbAlive;
}

TestNode::~TestNode()
{
  --g_nbAlive;
}

void TestNode::copyMembers(const TestNode& other)
{
  _value = other._value;
  _next = other._next;
  _children = other._children;
  _point = other._point;
}

void TestNode::writeMembers(BaseOArchive& archive) const
{
  archive << SerializationOItem("_value", _value) << SerializationOItem("_next", _next)
          << SerializationOItem("_children", _children) << SerializationOItem("_point", _point);
}

void TestNode::readMembers(BaseIArchive& archive, ipUInt32 /*version*/)
{
  archive >> SerializationIItem("_value", _value) >> SerializationIItem("_next", _next) >>
      SerializationIItem("_children", _children) >> SerializationIItem("_point", _point);
}

ORVEL_DEFINE_SERIALIZABLE_AS(TestNest, "orvel::TestNest", BaseSerializationObject, 1)

TestNest::TestNest(int depth)
{
  if (depth > 0)
    _inner = boost::make_shared<TestNest>(depth - 1);
}

void TestNest::copyMembers(const TestNest& other)
{
  _inner = other._inner;
}

void TestNest::writeMembers(BaseOArchive& archive) const
{
  const bool hasInner = _inner != nullptr;
  archive << SerializationOItem("hasInner", hasInner);
  if (hasInner)
    archive << SerializationOItem("inner", *_inner);
}

void TestNest::readMembers(BaseIArchive& archive, ipUInt32 /*version*/)
{
  bool hasInner = false;
  archive >> SerializationIItem("hasInner", hasInner);
  _inner.reset();
  if (hasInner)
  {
    _inner = boost::make_shared<TestNest>();
    archive >> SerializationIItem("inner", *_inner);
  }
}

ORVEL_DEFINE_SERIALIZABLE_AS(TestMix, "orvel::TestMix", BaseSerializationObject, 1)

boost::shared_ptr<TestMix> TestMix::makeFull()
{
  auto mix = boost::make_shared<TestMix>();
  mix->_bool = true;
  mix->_int8 = -128;
  mix->_uInt8 = 255;
  mix->_int16 = -32768;
  mix->_uInt16 = 65535;
  mix->_int32 = -2147483647;
  mix->_uInt32 = 4294967295U;
  mix->_int64 = -9223372036854775807L;
  mix->_uInt64 = 18446744073709551615UL;
  mix->_real32 = -1.5F;
  mix->_real64 = 0.1;
  mix->_string = "a <text> & \"more\"\n";
  mix->_path = "some/where";
  mix->_dataType = eDataType::eDT_Real32;
  mix->_point = TestPoint(3, -4);
  mix->_reals = {1, -2.5F, 1e30F};
  mix->_bools = {true, false, true};
  mix->_strings = {"", " one ", std::string("t\0wo", 4)};
  mix->_points = {TestPoint(1, 1), TestPoint(2, 5)};
  mix->_counts = {{"a", 1}, {"b", -2}};
  mix->_shared = mix->_sharedAgain = boost::make_shared<TestPoint>(9, 10);
  return mix;
}

bool TestMix::operator==(const TestMix& other) const
{
  const auto values = [](const TestMix& mix)
  {
    return std::tie(mix._bool, mix._int8, mix._uInt8, mix._int16, mix._uInt16, mix._int32, mix._uInt32,
                    mix._int64, mix._uInt64, mix._real32, mix._real64, mix._string, mix._path, mix._dataType,
                    mix._point, mix._reals, mix._bools, mix._strings, mix._points, mix._counts);
  };
  return values(*this) == values(other) &&
         (_shared == _sharedAgain) == (other._shared == other._sharedAgain) && !_shared == !other._shared &&
         (!_shared || *_shared == *other._shared) && !_null == !other._null;
}

void TestMix::copyMembers(const TestMix& other)
{
  const auto values = [](auto& mix)
  {
    return std::tie(mix._bool, mix._int8, mix._uInt8, mix._int16, mix._uInt16, mix._int32, mix._uInt32,
                    mix._int64, mix._uInt64, mix._real32, mix._real64, mix._string, mix._path, mix._dataType,
                    mix._point, mix._reals, mix._bools, mix._strings, mix._points, mix._counts, mix._shared,
                    mix._sharedAgain, mix._null);
  };
  values(*this) = values(other);
}

void TestMix::writeMembers(BaseOArchive& archive) const
{
  archive << SerializationOItem("_bool", _bool) << SerializationOItem("_int8", _int8)
          << SerializationOItem("_uInt8", _uInt8) << SerializationOItem("_int16", _int16)
          << SerializationOItem("_uInt16", _uInt16) << SerializationOItem("_int32", _int32)
          << SerializationOItem("_uInt32", _uInt32) << SerializationOItem("_int64", _int64)
          << SerializationOItem("_uInt64", _uInt64) << SerializationOItem("_real32", _real32)
          << SerializationOItem("_real64", _real64) << SerializationOItem("_string", _string)
          << SerializationOItem("_path", _path) << SerializationOItem("_dataType", _dataType)
          << SerializationOItem("_point", _point) << SerializationOItem("_reals", _reals)
          << SerializationOItem("_bools", _bools) << SerializationOItem("_strings", _strings)
          << SerializationOItem("_points", _points) << SerializationOItem("_counts", _counts)
          << SerializationOItem("_shared", _shared) << SerializationOItem("_sharedAgain", _sharedAgain)
          << SerializationOItem("_null", _null);
}

void TestMix::readMembers(BaseIArchive& archive, ipUInt32 /*version*/)
{
  archive >> SerializationIItem("_bool", _bool) >> SerializationIItem("_int8", _int8) >>
      SerializationIItem("_uInt8", _uInt8) >> SerializationIItem("_int16", _int16) >>
      SerializationIItem("_uInt16", _uInt16) >> SerializationIItem("_int32", _int32) >>
      SerializationIItem("_uInt32", _uInt32) >> SerializationIItem("_int64", _int64) >>
      SerializationIItem("_uInt64", _uInt64) >> SerializationIItem("_real32", _real32) >>
      SerializationIItem("_real64", _real64) >> SerializationIItem("_string", _string) >>
      SerializationIItem("_path", _path) >> SerializationIItem("_dataType", _dataType) >>
      SerializationIItem("_point", _point) >> SerializationIItem("_reals", _reals) >>
      SerializationIItem("_bools", _bools) >> SerializationIItem("_strings", _strings) >>
      SerializationIItem("_points", _points) >> SerializationIItem("_counts", _counts) >>
      SerializationIItem("_shared", _shared) >> SerializationIItem("_sharedAgain", _sharedAgain) >>
      SerializationIItem("_null", _null);
}

bool TestReluctant::g_refuses = false;

BoolResult TestReluctant::write(BaseOArchive& /*archive*/) const
{
  return g_refuses ? BoolResult(false, "the base can't write") : BoolResult(true);
}

BoolResult TestReluctant::read(BaseIArchive& /*archive*/)
{
  return g_refuses ? BoolResult(false, "the base can't read") : BoolResult(true);
}

ORVEL_DEFINE_SERIALIZABLE_AS(TestHeir, "orvel::TestHeir", TestReluctant, 1)

void TestHeir::copyMembers(const TestHeir& other)
{
  _value = other._value;
}

void TestHeir::writeMembers(BaseOArchive& archive) const
{
  archive << SerializationOItem("_value", _value);
}

void TestHeir::readMembers(BaseIArchive& archive, ipUInt32 /*version*/)
{
  archive >> SerializationIItem("_value", _value);
}

ORVEL_DEFINE_SERIALIZABLE_AS(TestBrittle, "orvel::TestBrittle", BaseSerializationObject, 1)

int TestBrittle::g_nbAlive = 0;

TestBrittle::TestBrittle()
{
  ++g_nbAlive;
}

TestBrittle::~TestBrittle()
{
  --g_nbAlive;
}

void TestBrittle::copyMembers(const TestBrittle& /*other*/)
{
  throw std::runtime_error("can't be copied");
}

void TestBrittle::writeMembers(BaseOArchive& archive) const
{
  archive << SerializationOItem("first", 1);
  throw std::runtime_error("can't be written");
}

void TestBrittle::readMembers(BaseIArchive& /*archive*/, ipUInt32 /*version*/)
{
  throw std::runtime_error("can't be read");
}

ORVEL_DEFINE_SERIALIZABLE_AS(TestWithGuid, "orvel::TestWithGuid", SerializationObjectWithGuid, 1)

void TestWithGuid::copyMembers(const TestWithGuid& /*other*/)
{
}

void TestWithGuid::writeMembers(BaseOArchive& /*archive*/) const
{
}

void TestWithGuid::readMembers(BaseIArchive& /*archive*/, ipUInt32 /*version*/)
{
}

ORVEL_DEFINE_SERIALIZABLE_AS(TestWithMode, "orvel::TestWithMode", BaseObjectWithSkeleton, 1)

void TestWithMode::copyMembers(const TestWithMode& /*other*/)
{
}

void TestWithMode::writeMembers(BaseOArchive& /*archive*/) const
{
}

void TestWithMode::readMembers(BaseIArchive& /*archive*/, ipUInt32 /*version*/)
{
}

const std::string& TestNotSerializable::getClassName() const
{
  static const std::string g_name = "orvel::TestNotSerializable";
  return g_name;
}

namespace
{
const DynamicRegistrator<TestNotSerializable> g_notSerializable("orvel::TestNotSerializable");
}

} // namespace orvel::test
