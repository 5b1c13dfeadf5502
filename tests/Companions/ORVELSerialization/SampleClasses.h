#pragma once

/// \file
/// \brief Classes of the frame that exist for the tests only.

#include <map>
#include <set>
#include <string>
#include <vector>

#include <boost/filesystem/path.hpp>
#include <boost/make_shared.hpp>

#include <ORVELSerialization/BaseObjectWithSkeleton.h>
#include <ORVELSerialization/DataType.h>
#include <ORVELSerialization/SerializableClass.h>
#include <ORVELSerialization/SerializationObjectWithGuid.h>

namespace orvel::test
{

/// \brief A pair of numbers, ordered. Version 3; version 1 held one number for both.
class TestPoint : public BaseSerializationObject
{
  ORVEL_DECLARE_SERIALIZABLE(TestPoint)

public:
  TestPoint() = default;
  TestPoint(ipInt32 x, ipInt32 y)
    : _x(x)
    , _y(y)
  {
  }
  bool operator<(const TestPoint& other) const { return _x < other._x; } ///< by x alone
  bool operator==(const TestPoint& other) const { return _x == other._x && _y == other._y; }

  ipInt32 _x = 0;
  ipInt32 _y = 0;
};
using TestPointPtr = boost::shared_ptr<TestPoint>;

/// \brief A node of any graph: a number, a next node, children of any class, a point in place.
class TestNode : public BaseSerializationObject
{
  ORVEL_DECLARE_SERIALIZABLE(TestNode)

public:
  TestNode();
  ~TestNode() override;

  static int g_nbAlive; ///< nodes that exist

  ipInt32 _value = 0;
  boost::shared_ptr<TestNode> _next;
  std::vector<SerializationObjectPtr> _children;
  TestPoint _point;
};
using TestNodePtr = boost::shared_ptr<TestNode>;

/// \brief Holds one of its own kind in place, as deep as asked for.
class TestNest : public BaseSerializationObject
{
  ORVEL_DECLARE_SERIALIZABLE(TestNest)

public:
  TestNest() = default;
  explicit TestNest(int depth); ///< \param depth number of nests within this one

  int getDepth() const { return _inner ? 1 + _inner->getDepth() : 0; }

private:
  boost::shared_ptr<TestNest> _inner;
};

/// \brief Something of everything that has an item form.
class TestMix : public BaseSerializationObject
{
  ORVEL_DECLARE_SERIALIZABLE(TestMix)

public:
  TestMix() = default;
  static boost::shared_ptr<TestMix> makeFull(); ///< one with a value in every member

  bool operator==(const TestMix& other) const;

  bool _bool = false;
  signed char _int8 = 0;
  unsigned char _uInt8 = 0;
  short _int16 = 0;
  unsigned short _uInt16 = 0;
  int _int32 = 0;
  unsigned int _uInt32 = 0;
  long _int64 = 0;
  unsigned long _uInt64 = 0;
  float _real32 = 0;
  double _real64 = 0;
  std::string _string;
  boost::filesystem::path _path;
  eDataType _dataType = eDataType::eDT_None;
  TestPoint _point;
  std::vector<float> _reals;
  std::vector<bool> _bools;
  std::vector<std::string> _strings;
  std::set<TestPoint> _points;
  std::map<std::string, int> _counts;
  boost::shared_ptr<TestPoint> _shared;
  boost::shared_ptr<TestPoint> _sharedAgain;
  boost::shared_ptr<TestPoint> _null;
};

/// \brief A base that reports failures by its result instead of an exception.
class TestReluctant : public BaseSerializationObject
{
public:
  BoolResult write(BaseOArchive& archive) const override;
  BoolResult read(BaseIArchive& archive) override;

  static bool g_refuses;
};

/// \brief A class upon a base that fails.
class TestHeir : public TestReluctant
{
  ORVEL_DECLARE_SERIALIZABLE(TestHeir)

public:
  TestHeir() = default;
  ipInt32 _value = 7;
};

/// \brief A class whose copying throws.
class TestBrittle : public BaseSerializationObject
{
  ORVEL_DECLARE_SERIALIZABLE(TestBrittle)

public:
  TestBrittle();
  ~TestBrittle() override;
  static int g_nbAlive;
};

/// \brief A class with an identifier.
class TestWithGuid : public SerializationObjectWithGuid
{
  ORVEL_DECLARE_SERIALIZABLE(TestWithGuid)

public:
  TestWithGuid() = default;
};

/// \brief A class with a serialization mode.
class TestWithMode : public BaseObjectWithSkeleton
{
  ORVEL_DECLARE_SERIALIZABLE(TestWithMode)

public:
  TestWithMode() = default;
};

/// \brief A class that is known to the factory but cannot be filed.
class TestNotSerializable : public BaseDynamicObject
{
public:
  static TestNotSerializable* createNewObject() { return new TestNotSerializable; }
  static boost::shared_ptr<TestNotSerializable> createSharedObject()
  {
    return boost::make_shared<TestNotSerializable>();
  }
  const std::string& getClassName() const override;
  BaseDynamicObject* createNew() const override { return createNewObject(); }
  DynamicObjectPtr createShared() const override { return createSharedObject(); }
  bool hasCopySupport() const override { return false; }
  BaseDynamicObject* duplicate() const override { return nullptr; }
  DynamicObjectPtr duplicateShared() const override { return nullptr; }
  void copy(const BaseDynamicObject&) override {}
};

} // namespace orvel::test
