// The order of virtual operations and of data members, on which compiled callers depend.

#include <map>
#include <set>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "ORVELBaseData/ORVELBaseData.h"
#include "Samples.h"
#include <ORVELUtil/DynamicObjectFactory.h>
#include <support/ClassList.h>
#include <support/LayoutChecks.h>
#include <support/SampleNode.h>
#include <support/Sanitizers.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

using ByteLeaf = DataItemLeaf<ipUInt8>;
using StringLeaf = DataItemLeaf<std::string>;
using ByteColl = DataItemLeafColl<ipUInt8>;
using BoolColl = DataItemLeafColl<ipBool>;
using Fragments = std::vector<void*>;
using Offsets = std::set<OffsetXY>;
using Offsets3d = std::set<OffsetXYZ>;
using Taps = std::map<OffsetXY, ipReal32>;
using Taps3d = std::map<OffsetXYZ, ipReal32>;
using Items = std::map<std::string, DataItemPtr>;
using Nodes = std::vector<DataItemNodePtr>;
using Objects = std::vector<SerializationObjectPtr>;
using Plans = std::map<PlanIndex, SerializationObjectPtr>;

} // namespace

/// X(class, type, member, its place in bytes)
#define MEMBERS(X)                                                                                           \
  X(BaseBlockBuffer, void*, _dataPtr, 40)                                                                    \
  X(BaseBuffer, ipUInt64, _size, 16)                                                                         \
  X(BaseBuffer, eDataType, _dataType, 24)                                                                    \
  X(BaseBuffer, ipUInt32, _baseSize, 32)                                                                     \
  X(BaseBuffer, bool, _isInitialized, 36)                                                                    \
  X(BaseDataItemEnumLeaf, ipUInt32, _value, 8)                                                               \
  X(BaseDataItemNodeColl, Nodes, _coll, 8)                                                                   \
  X(BaseFragBuffer, Fragments, _fragments, 40)                                                               \
  X(BaseFragBuffer, ipUInt64, _fragmentsSize, 64)                                                            \
  X(BasePlanIndexedColl, Plans, _planIndexedColl, 16)                                                        \
  X(BasePtrColl, Objects, _coll, 16)                                                                         \
  X(BaseStructuringElementInfo, bool, _bInit, 8)                                                             \
  X(BoolColl, std::vector<bool>, _coll, 8)                                                                   \
  X(ByteColl, std::vector<ipUInt8>, _coll, 8)                                                                \
  X(ByteLeaf, ipUInt8, _value, 8)                                                                            \
  X(DataIdentifier, std::string, _name, 24)                                                                  \
  X(DataItemMap, Items, _itemMap, 8)                                                                         \
  X(DoubleIdentifier, ipUInt32, _highValue, 8)                                                               \
  X(DoubleIdentifier, ipUInt32, _lowValue, 12)                                                               \
  X(ElementsRange, ipUInt64, _startOffset, 8)                                                                \
  X(ElementsRange, ipUInt64, _nbElements, 16)                                                                \
  X(GeometricCalibration, ipReal32, _xScale, 8)                                                              \
  X(GeometricCalibration, ipReal32, _yScale, 12)                                                             \
  X(GeometricCalibration, ipReal32, _zScale, 16)                                                             \
  X(GeometricCalibration, std::string, _unitStr, 24)                                                         \
  X(GeometricCalibration, ipReal32, _xOrigin, 56)                                                            \
  X(GeometricCalibration, ipReal32, _yOrigin, 60)                                                            \
  X(GeometricCalibration, ipReal32, _zOrigin, 64)                                                            \
  X(GeometricCalibration, Quaternion, _rotation, 68)                                                         \
  X(KernelXY, Taps, _dataColl, 8)                                                                            \
  X(KernelXY, ipInt32, _minX, 56)                                                                            \
  X(KernelXY, ipInt32, _minY, 60)                                                                            \
  X(KernelXY, ipUInt32, _sizeX, 64)                                                                          \
  X(KernelXY, ipUInt32, _sizeY, 68)                                                                          \
  X(KernelXY, ipReal32, _coefSum, 72)                                                                        \
  X(KernelXY, ipReal32, _absCoefSum, 76)                                                                     \
  X(KernelXYZ, Taps3d, _dataColl, 8)                                                                         \
  X(KernelXYZ, ipInt32, _minX, 56)                                                                           \
  X(KernelXYZ, ipInt32, _minY, 60)                                                                           \
  X(KernelXYZ, ipInt32, _minZ, 64)                                                                           \
  X(KernelXYZ, ipUInt32, _sizeX, 68)                                                                         \
  X(KernelXYZ, ipUInt32, _sizeY, 72)                                                                         \
  X(KernelXYZ, ipUInt32, _sizeZ, 76)                                                                         \
  X(KernelXYZ, ipReal32, _coefSum, 80)                                                                       \
  X(KernelXYZ, ipReal32, _absCoefSum, 84)                                                                    \
  X(OffsetXY, ipInt32, _xOffset, 8)                                                                          \
  X(OffsetXY, ipInt32, _yOffset, 12)                                                                         \
  X(OffsetXYZ, ipInt32, _xOffset, 8)                                                                         \
  X(OffsetXYZ, ipInt32, _yOffset, 12)                                                                        \
  X(OffsetXYZ, ipInt32, _zOffset, 16)                                                                        \
  X(PlanIndex, ipUInt64, _zPlanIdx, 8)                                                                       \
  X(PlanIndex, ipUInt64, _cPlanIdx, 16)                                                                      \
  X(PlanIndex, ipUInt64, _tPlanIdx, 24)                                                                      \
  X(Quaternion, ipReal32, _qr, 0)                                                                            \
  X(Quaternion, ipReal32, _qi, 4)                                                                            \
  X(Quaternion, ipReal32, _qj, 8)                                                                            \
  X(Quaternion, ipReal32, _qk, 12)                                                                           \
  X(SingleIdentifier, ipUInt32, _value, 8)                                                                   \
  X(StringIdentifier, std::string, _value, 8)                                                                \
  X(StringLeaf, std::string, _value, 8)                                                                      \
  X(StructuringElementXY, Offsets, _dataColl, 8)                                                             \
  X(StructuringElementXY, ipInt32, _minX, 56)                                                                \
  X(StructuringElementXY, ipInt32, _minY, 60)                                                                \
  X(StructuringElementXY, ipUInt32, _sizeX, 64)                                                              \
  X(StructuringElementXY, ipUInt32, _sizeY, 68)                                                              \
  X(StructuringElementXYInfo, eSEXYSubType, _seXYSubType, 16)                                                \
  X(StructuringElementXYInfo, ipReal64, _radius, 24)                                                         \
  X(StructuringElementXYInfo, ipUInt32, _halfSize, 32)                                                       \
  X(StructuringElementXYInfo, ipUInt32, _halfSizeX, 36)                                                      \
  X(StructuringElementXYInfo, ipUInt32, _halfSizeY, 40)                                                      \
  X(StructuringElementXYInfo, ipReal64, _theta, 48)                                                          \
  X(StructuringElementXYInfo, StructuringElementXYPtr, _pSEXY, 56)                                           \
  X(StructuringElementXYZ, Offsets3d, _dataColl, 8)                                                          \
  X(StructuringElementXYZ, ipInt32, _minX, 56)                                                               \
  X(StructuringElementXYZ, ipInt32, _minY, 60)                                                               \
  X(StructuringElementXYZ, ipInt32, _minZ, 64)                                                               \
  X(StructuringElementXYZ, ipUInt32, _sizeX, 68)                                                             \
  X(StructuringElementXYZ, ipUInt32, _sizeY, 72)                                                             \
  X(StructuringElementXYZ, ipUInt32, _sizeZ, 76)                                                             \
  X(StructuringElementXYZInfo, eSEXYZSubType, _seXYZSubType, 16)                                             \
  X(StructuringElementXYZInfo, ipReal64, _radius, 24)                                                        \
  X(StructuringElementXYZInfo, ipUInt32, _halfSize, 32)                                                      \
  X(StructuringElementXYZInfo, ipUInt32, _halfSizeX, 36)                                                     \
  X(StructuringElementXYZInfo, ipUInt32, _halfSizeY, 40)                                                     \
  X(StructuringElementXYZInfo, ipUInt32, _halfSizeZ, 44)                                                     \
  X(StructuringElementXYZInfo, ipReal64, _theta, 48)                                                         \
  X(StructuringElementXYZInfo, ipReal64, _phi, 56)                                                           \
  X(StructuringElementXYZInfo, StructuringElementXYZPtr, _pSEXYZ, 64)

/// X(class, operation that it adds, its place in the table)
#define OPERATIONS(X)                                                                                        \
  X(BaseBuffer, getBufferType, 12)                                                                           \
  X(BaseBuffer, clearDerived, 13)                                                                            \
  X(BaseDataItem, getDataItemType, 12)                                                                       \
  X(BaseDataItemEnumLeaf, getEnumNameStr, 14)                                                                \
  X(BaseDataItemEnumLeaf, getValueStr, 15)                                                                   \
  X(BaseDataItemEnumLeaf, fromString, 16)                                                                    \
  X(BaseDataItemEnumLeaf, toString, 17)                                                                      \
  X(BaseDataItemLeaf, getDataItemValueType, 13)                                                              \
  X(BaseDataItemLeafColl, getDataItemValueType, 13)                                                          \
  X(BaseDataItemNode, getNodeName, 13)                                                                       \
  X(BaseDataItemNode, getNodeLibraryName, 14)                                                                \
  X(BaseDataItemNode, getItemKeys, 15)                                                                       \
  X(BaseDataItemNode, getItemInfo, 16)                                                                       \
  X(BaseKernel, getKernelType, 12)                                                                           \
  X(BaseKernel, getNbData, 13)                                                                               \
  X(BaseKernel, clear, 14)                                                                                   \
  X(BasePlanIndexedColl, getElementTypeName, 12)                                                             \
  X(BasePlanIndexedColl, hasSkeletonElements, 13)                                                            \
  X(BasePtrColl, getElementTypeName, 12)                                                                     \
  X(BasePtrColl, hasSkeletonElements, 13)                                                                    \
  X(BaseStructuringElement, getStructuringElementType, 12)                                                   \
  X(BaseStructuringElementInfo, getStructuringElementType, 12)                                               \
  X(BaseStructuringElementInfo, clearDerived, 13)

/// X(class, operation that is not virtual)
#define PLAIN_OPERATIONS(X)                                                                                  \
  X(BaseBuffer, clear)                                                                                       \
  X(BaseFragBuffer, setDataPtr)                                                                              \
  X(BaseFragBuffer, rollUpFragments)                                                                         \
  X(BaseFragBuffer, rollDownFragments)                                                                       \
  X(BaseOwnBuffer, resize)                                                                                   \
  X(BasePlanIndexedColl, clear)                                                                              \
  X(BasePlanIndexedColl, insert)                                                                             \
  X(BasePlanIndexedColl, assign)                                                                             \
  X(FragHybridBuffer, setDataPtr)                                                                            \
  X(FragHybridBuffer, isBufferOwn)                                                                           \
  X(TypedOwnBuffer, init)

/// X(class that cannot be created, its base, its size in bytes)
#define BASES(X)                                                                                             \
  X(BaseBlockBuffer, BaseBuffer, 48)                                                                         \
  X(BaseBuffer, BaseObjectWithSkeleton, 40)                                                                  \
  X(BaseDataItem, BaseSerializationObject, 8)                                                                \
  X(BaseDataItemLeaf, BaseDataItem, 8)                                                                       \
  X(BaseDataItemLeafColl, BaseDataItem, 8)                                                                   \
  X(BaseDataItemNode, BaseDataItem, 16)                                                                      \
  X(BaseFragBuffer, BaseBuffer, 72)                                                                          \
  X(BaseIdentifier, BaseSerializationObject, 8)                                                              \
  X(BaseKernel, BaseSerializationObject, 8)                                                                  \
  X(BaseOwnBuffer, BaseBlockBuffer, 56)                                                                      \
  X(BasePlanIndexedColl, BaseObjectWithSkeleton, 64)                                                         \
  X(BasePtrColl, BaseObjectWithSkeleton, 40)                                                                 \
  X(BaseStructuringElement, BaseSerializationObject, 8)                                                      \
  X(BaseStructuringElementInfo, BaseSerializationObject, 16)

/// X(class, its base, its size in bytes, the number of entries in its table of virtual operations)
#define CLASSES(X)                                                                                           \
  X(BaseDataItemEnumLeaf, BaseDataItemLeaf, 16, 18)                                                          \
  X(BaseDataItemNodeColl, BaseDataItem, 32, 13)                                                              \
  X(BoolColl, BaseDataItemLeafColl, 48, 14)                                                                  \
  X(ByteColl, BaseDataItemLeafColl, 32, 14)                                                                  \
  X(ByteLeaf, BaseDataItemLeaf, 16, 14)                                                                      \
  X(DataIdentifier, SerializationObjectWithGuid, 56, 12)                                                     \
  X(DataItemMap, BaseDataItem, 56, 13)                                                                       \
  X(DoubleIdentifier, BaseIdentifier, 16, 12)                                                                \
  X(ElementsRange, BaseSerializationObject, 24, 12)                                                          \
  X(ExternalBuffer, BaseBlockBuffer, 48, 14)                                                                 \
  X(FragHybridBuffer, BaseFragBuffer, 80, 14)                                                                \
  X(GeometricCalibration, BaseSerializationObject, 88, 12)                                                   \
  X(HybridBuffer, BaseBlockBuffer, 56, 14)                                                                   \
  X(KernelXY, BaseKernel, 80, 15)                                                                            \
  X(KernelXYZ, BaseKernel, 88, 15)                                                                           \
  X(OffsetXY, BaseSerializationObject, 16, 12)                                                               \
  X(OffsetXYZ, BaseSerializationObject, 24, 12)                                                              \
  X(PlanIndex, BaseSerializationObject, 32, 12)                                                              \
  X(SingleIdentifier, BaseIdentifier, 16, 12)                                                                \
  X(StringIdentifier, BaseIdentifier, 40, 12)                                                                \
  X(StringLeaf, BaseDataItemLeaf, 40, 14)                                                                    \
  X(StructuringElementXY, BaseStructuringElement, 72, 13)                                                    \
  X(StructuringElementXYInfo, BaseStructuringElementInfo, 72, 14)                                            \
  X(StructuringElementXYZ, BaseStructuringElement, 80, 13)                                                   \
  X(StructuringElementXYZInfo, BaseStructuringElementInfo, 80, 14)                                           \
  X(TOwnBuffer<ipBool>, BaseOwnBuffer, 56, 14)                                                               \
  X(TOwnBuffer<ipInt16>, BaseOwnBuffer, 56, 14)                                                              \
  X(TOwnBuffer<ipInt32>, BaseOwnBuffer, 56, 14)                                                              \
  X(TOwnBuffer<ipInt64>, BaseOwnBuffer, 56, 14)                                                              \
  X(TOwnBuffer<ipInt8>, BaseOwnBuffer, 56, 14)                                                               \
  X(TOwnBuffer<ipReal32>, BaseOwnBuffer, 56, 14)                                                             \
  X(TOwnBuffer<ipReal64>, BaseOwnBuffer, 56, 14)                                                             \
  X(TOwnBuffer<ipUInt16>, BaseOwnBuffer, 56, 14)                                                             \
  X(TOwnBuffer<ipUInt32>, BaseOwnBuffer, 56, 14)                                                             \
  X(TOwnBuffer<ipUInt64>, BaseOwnBuffer, 56, 14)                                                             \
  X(TOwnBuffer<ipUInt8>, BaseOwnBuffer, 56, 14)                                                              \
  X(TypedOwnBuffer, BaseOwnBuffer, 56, 14)

// Members and operations may be private or protected.
#define EXPOSE_MEMBER(Class, Type, member, place) ORVEL_TEST_EXPOSE(Class##member, &Class::member)
MEMBERS(EXPOSE_MEMBER)
#undef EXPOSE_MEMBER
#define EXPOSE_OPERATION(Class, operation, place) ORVEL_TEST_EXPOSE(Class##operation, &Class::operation)
OPERATIONS(EXPOSE_OPERATION)
#undef EXPOSE_OPERATION
#define EXPOSE_OPERATION(Class, operation) ORVEL_TEST_EXPOSE(Class##operation, &Class::operation)
PLAIN_OPERATIONS(EXPOSE_OPERATION)
#undef EXPOSE_OPERATION

namespace
{

TEST(Layout, OfMembersIsThatOfTheTable)
{
#define EXPECT_MEMBER(Class, Type, member, place)                                                            \
  static_assert(std::is_same_v<decltype(memberOf(Class##member())), Type Class::*>);                         \
  EXPECT_EQ(offsetOf(memberOf(Class##member())), place) << #Class "::" #member;
  MEMBERS(EXPECT_MEMBER)
#undef EXPECT_MEMBER
  EXPECT_EQ(sizeof(Quaternion), 16U);
}

TEST(Layout, OfOperationsIsThatOfTheTable)
{
#define EXPECT_OPERATION(Class, operation, place)                                                            \
  EXPECT_EQ(vtableIndexOf(memberOf(Class##operation())), place##U) << #Class "::" #operation;
  OPERATIONS(EXPECT_OPERATION)
#undef EXPECT_OPERATION
#define EXPECT_PLAIN(Class, operation)                                                                       \
  EXPECT_FALSE(isVirtual(memberOf(Class##operation()))) << #Class "::" #operation;
  PLAIN_OPERATIONS(EXPECT_PLAIN)
#undef EXPECT_PLAIN
}

/// Two entries for the destructor come first, then what every object has.
template <class Class>
void expectFrame()
{
  EXPECT_EQ(vtableIndexOf(&Class::getClassName), 2U);
  EXPECT_EQ(vtableIndexOf(&Class::createNew), 3U);
  EXPECT_EQ(vtableIndexOf(&Class::createShared), 4U);
  EXPECT_EQ(vtableIndexOf(&Class::hasCopySupport), 5U);
  EXPECT_EQ(vtableIndexOf(&Class::duplicate), 6U);
  EXPECT_EQ(vtableIndexOf(&Class::duplicateShared), 7U);
  EXPECT_EQ(vtableIndexOf(&Class::initCtorCopy), 8U);
  EXPECT_EQ(vtableIndexOf(&Class::copy), 9U);
  EXPECT_EQ(vtableIndexOf(&Class::write), 10U);
  EXPECT_EQ(vtableIndexOf(&Class::read), 11U);
}

TEST(Layout, OfClassesIsThatOfTheTable)
{
#define EXPECT_CLASS(Class, Base, size, nbEntries)                                                           \
  {                                                                                                          \
    SCOPED_TRACE(#Class);                                                                                    \
    static_assert(std::is_base_of_v<Base, Class>);                                                           \
    EXPECT_EQ(sizeof(Class), size##U);                                                                       \
    expectFrame<Class>();                                                                                    \
    if (!isSanitized) /* the sanitizer widens the table */                                                   \
    {                                                                                                        \
      EXPECT_EQ(vtableSizeOf(*Class::createSharedObject()), nbEntries##U);                                   \
    }                                                                                                        \
  }
  CLASSES(EXPECT_CLASS)
#undef EXPECT_CLASS
}

// The bases. The factory does not know them, and each has a name and a version of its own.

template <class Class>
void expectBase(const std::string& name)
{
  SCOPED_TRACE(name);
  static_assert(std::is_abstract_v<Class>);
  expectFrame<Class>();
  EXPECT_EQ(Class::getTypeName(), name);
  EXPECT_EQ(getVersionOf<Class>(), versionOf(name));
  EXPECT_FALSE(DynamicObjectFactory::getInstance().isRegistered(name));
}

TEST(Bases, AreThoseOfTheTable)
{
#define EXPECT_BASE(Class, Base, size)                                                                       \
  static_assert(std::is_base_of_v<Base, Class>);                                                             \
  EXPECT_EQ(sizeof(Class), size##U) << #Class;                                                               \
  expectBase<Class>("orvel::" #Class);
  BASES(EXPECT_BASE)
#undef EXPECT_BASE
}

TEST(Bases, GiveObjectsTheirOwnNameAtTheirLevel)
{
  EXPECT_EQ(ExternalBuffer().BaseBuffer::getClassName(), "orvel::BaseBuffer");
  EXPECT_EQ(ExternalBuffer().BaseBlockBuffer::getClassName(), "orvel::BaseBlockBuffer");
  EXPECT_EQ(FragHybridBuffer().BaseFragBuffer::getClassName(), "orvel::BaseFragBuffer");
  EXPECT_EQ(TypedOwnBuffer().BaseOwnBuffer::getClassName(), "orvel::BaseOwnBuffer");
  EXPECT_EQ(DataItemMap().BaseDataItem::getClassName(), "orvel::BaseDataItem");
  EXPECT_EQ(ByteLeaf().BaseDataItemLeaf::getClassName(), "orvel::BaseDataItemLeaf");
  EXPECT_EQ(ByteColl().BaseDataItemLeafColl::getClassName(), "orvel::BaseDataItemLeafColl");
  EXPECT_EQ(SampleNode().BaseDataItemNode::getClassName(), "orvel::BaseDataItemNode");
  EXPECT_EQ(SingleIdentifier(1).BaseIdentifier::getClassName(), "orvel::BaseIdentifier");
  EXPECT_EQ(KernelXY().BaseKernel::getClassName(), "orvel::BaseKernel");
  EXPECT_EQ(StructuringElementXY().BaseStructuringElement::getClassName(), "orvel::BaseStructuringElement");
  EXPECT_EQ(StructuringElementXYInfo().BaseStructuringElementInfo::getClassName(),
            "orvel::BaseStructuringElementInfo");
}

} // namespace
