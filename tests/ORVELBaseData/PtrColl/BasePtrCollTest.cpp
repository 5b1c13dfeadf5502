#include "ORVELBaseData/PtrColl/BasePtrColl.h"

#include <type_traits>

#include <gtest/gtest.h>

#include <ORVELSerialization/ORVELSerializationException.h>
#include <support/LayoutChecks.h>
#include <support/ObjectCollArchive.h>

// What it shares with collections of plans is tested in ObjectCollTest.cpp.

ORVEL_TEST_EXPOSE(Coll, &orvel::BasePtrColl::_coll)

namespace
{

using namespace orvel;
using namespace orvel::test;

TEST(BasePtrColl, IsEmptyAtFirst)
{
  EXPECT_TRUE(PtrColl().getObjects().empty());
}

TEST(BasePtrColl, HasOneMemberBehindThoseOfItsBase)
{
  static_assert(std::is_same_v<decltype(memberOf(Coll())), Objects BasePtrColl::*>);
  EXPECT_EQ(offsetOf(memberOf(Coll())), static_cast<std::ptrdiff_t>(sizeof(BaseObjectWithSkeleton)));
  EXPECT_EQ(sizeof(BasePtrColl), sizeof(BaseObjectWithSkeleton) + sizeof(Objects));
}

TEST(BasePtrCollFile, IsThisXmlText)
{
  const PtrColl coll(false, {boost::make_shared<ElementsRange>(3, 4), nullptr});
  EXPECT_EQ(fileOf<HandWrittenXml>([&](BaseOArchive& archive) { coll.write(archive); }),
            R"(<?xml version="1.0" encoding="UTF-8"?>
<orvelArchive format="1">
  <section name="orvel::BasePtrColl">
    <item key="version">1</item>
  </section>
  <section name="_coll">
    <section name="vector">
      <item key="size">2</item>
      <section name="value">
        <section name="shared_ptr&lt;orvel::BaseSerializationObject&gt;">
          <pointer key="pObject" id="1" class="orvel::ElementsRange">
            <section name="orvel::ElementsRange">
              <item key="version">2</item>
            </section>
            <item key="_startOffset">3</item>
            <item key="_nbElements">4</item>
          </pointer>
        </section>
      </section>
      <section name="value">
        <section name="shared_ptr&lt;orvel::BaseSerializationObject&gt;">
          <pointer key="pObject" null="true"/>
        </section>
      </section>
    </section>
  </section>
</orvelArchive>
)");
}

TEST(BasePtrCollFile, OfDataIsThisXmlText)
{
  const PtrColl coll(true, {makeElement(11, 12), nullptr, makeElement(21, 22)}, g_data);
  EXPECT_EQ(fileOf<HandWrittenXml>([&](BaseOArchive& archive) { coll.write(archive); }),
            R"(<?xml version="1.0" encoding="UTF-8"?>
<orvelArchive format="1">
  <section name="orvel::BasePtrColl">
    <item key="version">1</item>
  </section>
  <object key="curObject">
    <section name="orvel::SkeletonElement">
      <item key="version">1</item>
    </section>
    <item key="_data">12</item>
  </object>
  <object key="curObject">
    <item key="_data">22</item>
  </object>
</orvelArchive>
)");
}

template <class HandWritten>
class BasePtrCollArchive : public testing::Test
{
};
TYPED_TEST_SUITE(BasePtrCollArchive, Formats, );

TYPED_TEST(BasePtrCollArchive, WithMoreElementsThanItCouldHoldTakesNoMemory)
{
  PtrColl coll;
  EXPECT_THROW(readStart<TypeParam>(ObjectCollArchive<PtrColl, TypeParam>().open(4294967295).file(),
                                    [&](BaseIArchive& archive) { coll.read(archive); }),
               ORVELSerializationException);
  EXPECT_EQ(coll.getObjects().capacity(), 0U);
}

} // namespace
