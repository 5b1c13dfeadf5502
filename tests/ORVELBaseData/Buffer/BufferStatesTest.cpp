// What every accessor of every buffer answers in every state, as tables.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "OwnedBlockTesting.h"
#include <ORVELBaseData/Buffer/ExternalBuffer.h>
#include <ORVELBaseData/Buffer/FragHybridBuffer.h>
#include <ORVELBaseData/Buffer/HybridBuffer.h>
#include <ORVELBaseData/Buffer/TOwnBuffer.h>
#include <ORVELBaseData/Buffer/TypedOwnBuffer.h>
#include <ORVELBaseData/ORVELBaseDataException.h>
#include <support/FailingAllocation.h>
#include <support/LayoutChecks.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

ORVEL_TEST_EXPOSE(OwnBlock, &BaseOwnBuffer::_block)
ORVEL_TEST_EXPOSE(HybridBlock, &HybridBuffer::_block)
ORVEL_TEST_EXPOSE(FragBlock, &FragHybridBuffer::_block)

constexpr ipUInt64 g_largest = std::numeric_limits<ipUInt64>::max();

/// Memory of somebody else's.
char g_foreign[64];

const char* const g_no = "Buffer should be initialized before used";
const char* const g_tooLarge = "Memory allocation failed with requested size 18446744073709551615";
const char* const g_none = "Invalid buffer type eDT_None";

/// A buffer, and how it is brought into the states that it can have. What it can't do is left empty.
struct Subject
{
  using Step = std::function<void()>;

  std::shared_ptr<BaseBuffer> buffer;
  std::function<const char*()> getBlock; // the one that it owns
  std::string noMemory;                  // what initMore raises without memory for the block
  std::string noList;                    // what initMoreWithoutList raises

  Step init;                // with 3 elements, or 3 fragments of 4
  Step initEmpty;           // without elements, or fragments
  Step initMore;            // with a block of its own for 5 elements, or 5 fragments of 3
  Step initTooLarge;        // with a block of its own beyond 64 bits, or of the largest size
  Step initNone;            // with 5 elements of eDT_None, or 2 fragments of 5
  Step initNoneOtherwise;   // the same by the other form of init, which takes memory or doesn't
  Step initMoreWithoutList; // with 5 fragments, and no memory for their list
  Step initNull;            // with 3 elements at a null pointer
};

// Questions

/// An address, told from the start of the owned block or of the memory of somebody else's.
std::string nameOf(const Subject& subject, const void* address)
{
  if (address == nullptr)
    return "null";
  const auto number = reinterpret_cast<std::uintptr_t>(address);
  const std::pair<const char*, const char*> places[] = {{subject.getBlock(), "block"},
                                                        {g_foreign, "foreign"}};
  for (const auto& place : places)
    if (const auto offset = number - reinterpret_cast<std::uintptr_t>(place.first);
        place.first != nullptr && offset < sizeof g_foreign)
      return offset == 0 ? place.second : place.second + ("+" + std::to_string(offset));
  return "address " + std::to_string(number);
}

std::string nameOf(const Subject& subject, const BufferPtrColl& fragments)
{
  std::string names;
  for (const void* const fragment : fragments)
    names += (names.empty() ? "" : " ") + nameOf(subject, fragment);
  return names;
}

std::string nameOf(bool answer)
{
  return answer ? "true" : "false";
}

/// Collects what is answered, or raised.
class Answers
{
public:
  template <class Question>
  void ask(const char* accessor, Question question)
  {
    std::string answer;
    try
    {
      answer = question();
    }
    catch (const ORVELBaseDataException& failure)
    {
      answer = failure.getMessage();
    }
    _lines += std::string(accessor) + ": " + answer + "\n";
  }

  const std::string& get() const { return _lines; }

private:
  std::string _lines;
};

void askBlock(Answers& answers, const Subject& subject, BaseBlockBuffer& buffer)
{
  const BaseBlockBuffer& constant = buffer;
  answers.ask("getDataPtr()", [&] { return nameOf(subject, buffer.getDataPtr()); });
  answers.ask("getDataPtr() const", [&] { return nameOf(subject, constant.getDataPtr()); });
  answers.ask("getDataPtr(3)", [&] { return nameOf(subject, buffer.getDataPtr(3)); });
  answers.ask("getDataPtr(3) const", [&] { return nameOf(subject, constant.getDataPtr(3)); });
}

void askFragments(Answers& answers, const Subject& subject, FragHybridBuffer& buffer)
{
  const FragHybridBuffer& constant = buffer;
  const auto list = [&]
  {
    return nameOf(subject, constant.getBufferPtrColl());
  };
  answers.ask("isBufferOwn()", [&] { return nameOf(constant.isBufferOwn()); });
  answers.ask("getNbFragments()", [&] { return std::to_string(constant.getNbFragments()); });
  answers.ask("getFragmentsSize()", [&] { return std::to_string(constant.getFragmentsSize()); });
  answers.ask("getBufferPtrColl()", list);
  answers.ask("getDataPtr(1)", [&] { return nameOf(subject, buffer.getDataPtr(1)); });
  answers.ask("getDataPtr(1) const", [&] { return nameOf(subject, constant.getDataPtr(1)); });
  answers.ask("getDataPtr(3)", [&] { return nameOf(subject, buffer.getDataPtr(3)); });
  answers.ask("getDataPtr(3) const", [&] { return nameOf(subject, constant.getDataPtr(3)); });
  answers.ask("getDataPtr(1, 7)", [&] { return nameOf(subject, buffer.getDataPtr(1, 7)); });
  answers.ask("getDataPtr(1, 7) const", [&] { return nameOf(subject, constant.getDataPtr(1, 7)); });
  answers.ask("getDataPtr(3, 7)", [&] { return nameOf(subject, buffer.getDataPtr(3, 7)); });
  answers.ask("getDataPtr(3, 7) const", [&] { return nameOf(subject, constant.getDataPtr(3, 7)); });
  const auto set = [&](ipUInt64 fragment)
  {
    buffer.setDataPtr(fragment, g_foreign + 60);
    return list();
  };
  answers.ask("setDataPtr(3)", [&] { return set(3); });
  answers.ask("setDataPtr(1)", [&] { return set(1); });
  answers.ask("rollUpFragments()",
              [&]
              {
                buffer.rollUpFragments();
                return list();
              });
  answers.ask("rollDownFragments()",
              [&]
              {
                buffer.rollDownFragments();
                return list();
              });
}

std::string answersOf(const Subject& subject)
{
  Answers answers;
  BaseBuffer& buffer = *subject.buffer;
  answers.ask("isInitialized()", [&] { return nameOf(buffer.isInitialized()); });
  answers.ask("getBufferType()", [&] { return buffer.getBufferType().getText(); });
  answers.ask("owned block", [&] { return subject.getBlock() != nullptr ? "some" : "none"; });
  answers.ask("getSize()", [&] { return std::to_string(buffer.getSize()); });
  answers.ask("getBufferBaseSize()", [&] { return std::to_string(buffer.getBufferBaseSize()); });
  answers.ask("getDataType()", [&] { return buffer.getDataType().getText(); });
  answers.ask("getMemorySize()", [&] { return std::to_string(buffer.getMemorySize()); });
  if (auto* const block = dynamic_cast<BaseBlockBuffer*>(&buffer))
    askBlock(answers, subject, *block);
  if (const auto* const hybrid = dynamic_cast<HybridBuffer*>(&buffer))
    answers.ask("isBufferOwn()", [&] { return nameOf(hybrid->isBufferOwn()); });
  if (auto* const fragmented = dynamic_cast<FragHybridBuffer*>(&buffer))
    askFragments(answers, subject, *fragmented);
  if (auto* const own = dynamic_cast<BaseOwnBuffer*>(&buffer))
    answers.ask("resize(3)",
                [&]
                {
                  own->resize(3);
                  return nameOf(subject, own->getDataPtr());
                });
  return answers.get();
}

// Answers

/// What a buffer answers by; the places of the texts in a row.
enum Column
{
  nothing,       ///< not initialised
  refused,       ///< not initialised, eDT_None was refused
  values,        ///< initialised
  empty,         ///< initialised without elements
  refusedValues, ///< initialised, then eDT_None was refused
  refusedOther,  ///< the same by the other form of init
  null           ///< initialised with a null pointer
};

struct Row
{
  const char* accessor;
  const char* texts[7];
};

using Table = std::vector<Row>;

// The columns line up.
// clang-format off

/// {type}, {base} and {three} stand for the type, the bytes of an element and of three.
const Table g_ownTable = {
    //                       nothing    refused    values           empty            refusedValues
    {"isInitialized()",     {"false",   "false",   "true",          "true",          "true"}},
    {"getBufferType()",     {"eBT_Own", "eBT_Own", "eBT_Own",       "eBT_Own",       "eBT_Own"}},
    {"owned block",         {"none",    "some",    "some",          "some",          "some"}},
    {"getSize()",           {g_no,      g_no,      "3",             "0",             "3"}},
    {"getBufferBaseSize()", {g_no,      g_no,      "{base}",        "{base}",        "{base}"}},
    {"getDataType()",       {g_no,      g_no,      "{type}",        "{type}",        "{type}"}},
    {"getMemorySize()",     {g_no,      g_no,      "{three}",       "0",             "{three}"}},
    {"getDataPtr()",        {g_no,      g_no,      "block",         "block",         "block"}},
    {"getDataPtr() const",  {g_no,      g_no,      "block",         "block",         "block"}},
    {"getDataPtr(3)",       {g_no,      g_no,      "block+{three}", "block+{three}", "block+{three}"}},
    {"getDataPtr(3) const", {g_no,      g_no,      "block+{three}", "block+{three}", "block+{three}"}},
    {"resize(3)",           {g_no,      g_no,      "block",         "block",         "block"}},
};

// Elements of eDT_Int16 from here on.

const char* const g_ext = "eBT_External";

const Table g_externalTable = {
    //                       nothing    refused    values       empty        refusedValues    refusedOther    null
    {"isInitialized()",     {"false",   "false",   "true",      "true",      "true",          "",             "true"}},
    {"getBufferType()",     {g_ext,     g_ext,     g_ext,       g_ext,       g_ext,           "",             g_ext}},
    {"owned block",         {"none",    "none",    "none",      "none",      "none",          "",             "none"}},
    {"getSize()",           {g_no,      g_no,      "3",         "0",         "3",             "",             "3"}},
    {"getBufferBaseSize()", {g_no,      g_no,      "2",         "2",         "2",             "",             "2"}},
    {"getDataType()",       {g_no,      g_no,      "eDT_Int16", "eDT_Int16", "eDT_Int16",     "",             "eDT_Int16"}},
    {"getMemorySize()",     {g_no,      g_no,      "6",         "0",         "6",             "",             "6"}},
    {"getDataPtr()",        {g_no,      g_no,      "foreign",   "foreign",   "foreign+32",    "",             "null"}},
    {"getDataPtr() const",  {g_no,      g_no,      "foreign",   "foreign",   "foreign+32",    "",             "null"}},
    {"getDataPtr(3)",       {g_no,      g_no,      "foreign+6", "foreign+6", "foreign+38",    "",             "address 6"}},
    {"getDataPtr(3) const", {g_no,      g_no,      "foreign+6", "foreign+6", "foreign+38",    "",             "address 6"}},
};

const char* const g_hyb = "eBT_Hybrid";

const Table g_hybridOwnerTable = {
    //                       nothing    refused    values       empty        refusedValues    refusedOther
    {"isInitialized()",     {"false",   "false",   "true",      "true",      "true",          "true"}},
    {"getBufferType()",     {g_hyb,     g_hyb,     g_hyb,       g_hyb,       g_hyb,           g_hyb}},
    {"owned block",         {"none",    "some",    "some",      "some",      "some",          "none"}},
    {"getSize()",           {g_no,      g_no,      "3",         "0",         "3",             "3"}},
    {"getBufferBaseSize()", {g_no,      g_no,      "2",         "2",         "2",             "2"}},
    {"getDataType()",       {g_no,      g_no,      "eDT_Int16", "eDT_Int16", "eDT_Int16",     "eDT_Int16"}},
    {"getMemorySize()",     {g_no,      g_no,      "6",         "0",         "6",             "6"}},
    {"getDataPtr()",        {g_no,      g_no,      "block",     "block",     "block",         "foreign+32"}},
    {"getDataPtr() const",  {g_no,      g_no,      "block",     "block",     "block",         "foreign+32"}},
    {"getDataPtr(3)",       {g_no,      g_no,      "block+6",   "block+6",   "block+6",       "foreign+38"}},
    {"getDataPtr(3) const", {g_no,      g_no,      "block+6",   "block+6",   "block+6",       "foreign+38"}},
    {"isBufferOwn()",       {g_no,      g_no,      "true",      "true",      "true",          "false"}},
};

const Table g_hybridViewTable = {
    //                       nothing    refused    values       empty        refusedValues    refusedOther    null
    {"isInitialized()",     {"false",   "false",   "true",      "true",      "true",          "true",         "true"}},
    {"getBufferType()",     {g_hyb,     g_hyb,     g_hyb,       g_hyb,       g_hyb,           g_hyb,          g_hyb}},
    {"owned block",         {"none",    "none",    "none",      "none",      "none",          "some",         "none"}},
    {"getSize()",           {g_no,      g_no,      "3",         "0",         "3",             "3",            "3"}},
    {"getBufferBaseSize()", {g_no,      g_no,      "2",         "2",         "2",             "2",            "2"}},
    {"getDataType()",       {g_no,      g_no,      "eDT_Int16", "eDT_Int16", "eDT_Int16",     "eDT_Int16",    "eDT_Int16"}},
    {"getMemorySize()",     {g_no,      g_no,      "6",         "0",         "6",             "6",            "6"}},
    {"getDataPtr()",        {g_no,      g_no,      "foreign",   "foreign",   "foreign+32",    "block",        "null"}},
    {"getDataPtr() const",  {g_no,      g_no,      "foreign",   "foreign",   "foreign+32",    "block",        "null"}},
    {"getDataPtr(3)",       {g_no,      g_no,      "foreign+6", "foreign+6", "foreign+38",    "block+6",      "address 6"}},
    {"getDataPtr(3) const", {g_no,      g_no,      "foreign+6", "foreign+6", "foreign+38",    "block+6",      "address 6"}},
    {"isBufferOwn()",       {g_no,      g_no,      "false",     "false",     "false",         "true",         "true"}},
};

const char* const g_frag = "eBT_FragHybrid";
const char* const g_own = "Can't set fragment data pointer on own fragment hybrid buffer";
const char* const g_3of3 = "Invalid fragment index 3 for buffer with 3 fragments";
const char* const g_3of2 = "Invalid fragment index 3 for buffer with 2 fragments";
const char* const g_3of0 = "Invalid fragment index 3 for buffer with 0 fragments";
const char* const g_1of0 = "Invalid fragment index 1 for buffer with 0 fragments";

const Table g_fragOwnerTable = {
    //                          nothing    refused    values                    empty        refusedValues    refusedOther
    {"isInitialized()",        {"false",   "false",   "true",                   "true",      "true",          "true"}},
    {"getBufferType()",        {g_frag,    g_frag,    g_frag,                   g_frag,      g_frag,          g_frag}},
    {"owned block",            {"none",    "some",    "some",                   "some",      "some",          "none"}},
    {"getSize()",              {g_no,      g_no,      "12",                     "0",         "12",            "12"}},
    {"getBufferBaseSize()",    {g_no,      g_no,      "2",                      "2",         "2",             "2"}},
    {"getDataType()",          {g_no,      g_no,      "eDT_Int16",              "eDT_Int16", "eDT_Int16",     "eDT_Int16"}},
    {"getMemorySize()",        {g_no,      g_no,      "24",                     "0",         "24",            "24"}},
    {"isBufferOwn()",          {"false",   "true",    "true",                   "true",      "true",          "false"}},
    {"getNbFragments()",       {g_no,      g_no,      "3",                      "0",         "2",             "2"}},
    {"getFragmentsSize()",     {g_no,      g_no,      "4",                      "4",         "5",             "5"}},
    {"getBufferPtrColl()",     {g_no,      g_no,      "block block+8 block+16", "",          "block block",   "foreign+48 foreign+8"}},
    {"getDataPtr(1)",          {g_no,      g_no,      "block+8",                g_1of0,      "block",         "foreign+8"}},
    {"getDataPtr(1) const",    {g_no,      g_no,      "block+8",                g_1of0,      "block",         "foreign+8"}},
    {"getDataPtr(3)",          {g_no,      g_no,      g_3of3,                   g_3of0,      g_3of2,          g_3of2}},
    {"getDataPtr(3) const",    {g_no,      g_no,      g_3of3,                   g_3of0,      g_3of2,          g_3of2}},
    {"getDataPtr(1, 7)",       {g_no,      g_no,      "block+22",               g_1of0,      "block+14",      "foreign+22"}},
    {"getDataPtr(1, 7) const", {g_no,      g_no,      "block+22",               g_1of0,      "block+14",      "foreign+22"}},
    {"getDataPtr(3, 7)",       {g_no,      g_no,      g_3of3,                   g_3of0,      g_3of2,          g_3of2}},
    {"getDataPtr(3, 7) const", {g_no,      g_no,      g_3of3,                   g_3of0,      g_3of2,          g_3of2}},
    {"setDataPtr(3)",          {g_no,      g_own,     g_own,                    g_own,       g_own,           g_3of2}},
    {"setDataPtr(1)",          {g_no,      g_own,     g_own,                    g_own,       g_own,           "foreign+48 foreign+60"}},
    {"rollUpFragments()",      {g_no,      g_no,      "block+8 block+16 block", "",          "block block",   "foreign+60 foreign+48"}},
    {"rollDownFragments()",    {g_no,      g_no,      "block block+8 block+16", "",          "block block",   "foreign+48 foreign+60"}},
};

const Table g_fragViewTable = {
    //                          nothing    refused    values                           empty        refusedValues            refusedOther
    {"isInitialized()",        {"false",   "false",   "true",                          "true",      "true",                  "true"}},
    {"getBufferType()",        {g_frag,    g_frag,    g_frag,                          g_frag,      g_frag,                  g_frag}},
    {"owned block",            {"none",    "none",    "none",                          "none",      "none",                  "some"}},
    {"getSize()",              {g_no,      g_no,      "12",                            "0",         "12",                    "12"}},
    {"getBufferBaseSize()",    {g_no,      g_no,      "2",                             "2",         "2",                     "2"}},
    {"getDataType()",          {g_no,      g_no,      "eDT_Int16",                     "eDT_Int16", "eDT_Int16",             "eDT_Int16"}},
    {"getMemorySize()",        {g_no,      g_no,      "24",                            "0",         "24",                    "24"}},
    {"isBufferOwn()",          {"false",   "false",   "false",                         "false",     "false",                 "true"}},
    {"getNbFragments()",       {g_no,      g_no,      "3",                             "0",         "2",                     "2"}},
    {"getFragmentsSize()",     {g_no,      g_no,      "4",                             "4",         "5",                     "5"}},
    {"getBufferPtrColl()",     {g_no,      g_no,      "foreign foreign+16 foreign+32", "",          "foreign+48 foreign+8",  "block block"}},
    {"getDataPtr(1)",          {g_no,      g_no,      "foreign+16",                    g_1of0,      "foreign+8",             "block"}},
    {"getDataPtr(1) const",    {g_no,      g_no,      "foreign+16",                    g_1of0,      "foreign+8",             "block"}},
    {"getDataPtr(3)",          {g_no,      g_no,      g_3of3,                          g_3of0,      g_3of2,                  g_3of2}},
    {"getDataPtr(3) const",    {g_no,      g_no,      g_3of3,                          g_3of0,      g_3of2,                  g_3of2}},
    {"getDataPtr(1, 7)",       {g_no,      g_no,      "foreign+30",                    g_1of0,      "foreign+22",            "block+14"}},
    {"getDataPtr(1, 7) const", {g_no,      g_no,      "foreign+30",                    g_1of0,      "foreign+22",            "block+14"}},
    {"getDataPtr(3, 7)",       {g_no,      g_no,      g_3of3,                          g_3of0,      g_3of2,                  g_3of2}},
    {"getDataPtr(3, 7) const", {g_no,      g_no,      g_3of3,                          g_3of0,      g_3of2,                  g_3of2}},
    {"setDataPtr(3)",          {g_no,      g_no,      g_3of3,                          g_3of0,      g_3of2,                  g_own}},
    {"setDataPtr(1)",          {g_no,      g_no,      "foreign foreign+60 foreign+32", g_1of0,      "foreign+48 foreign+60", g_own}},
    {"rollUpFragments()",      {g_no,      g_no,      "foreign+60 foreign+32 foreign", "",          "foreign+60 foreign+48", "block block"}},
    {"rollDownFragments()",    {g_no,      g_no,      "foreign foreign+60 foreign+32", "",          "foreign+48 foreign+60", "block block"}},
};

// clang-format on

// Buffers

/// Makes the buffer of a type's own take any type, as the classes between may.
template <class T>
class OwnBufferOf : public TOwnBuffer<T>
{
public:
  using BaseOwnBuffer::initBase;
};

template <class T>
Subject makeOwn()
{
  const auto buffer = std::make_shared<OwnBufferOf<T>>();
  Subject subject;
  subject.buffer = buffer;
  subject.init = [=]
  {
    buffer->init(3);
  };
  subject.initEmpty = [=]
  {
    buffer->init(0);
  };
  subject.initMore = [=]
  {
    buffer->init(5);
  };
  subject.initTooLarge = [=]
  {
    buffer->init(g_largest);
  };
  subject.initNone = [=]
  {
    buffer->initBase(5, eDataType::eDT_None);
  };
  return subject;
}

Subject makeTypedOwn()
{
  const auto buffer = std::make_shared<TypedOwnBuffer>();
  Subject subject;
  subject.buffer = buffer;
  subject.init = [=]
  {
    buffer->init(3, eDataType::eDT_UInt16);
  };
  subject.initEmpty = [=]
  {
    buffer->init(0, eDataType::eDT_UInt16);
  };
  subject.initMore = [=]
  {
    buffer->init(5, eDataType::eDT_UInt16);
  };
  subject.initTooLarge = [=]
  {
    buffer->init(g_largest, eDataType::eDT_UInt16);
  };
  subject.initNone = [=]
  {
    buffer->init(5, eDataType::eDT_None);
  };
  return subject;
}

Subject makeExternal()
{
  const auto buffer = std::make_shared<ExternalBuffer>();
  Subject subject;
  subject.buffer = buffer;
  subject.getBlock = []
  {
    return nullptr;
  };
  subject.init = [=]
  {
    buffer->init(3, eDataType::eDT_Int16, g_foreign);
  };
  subject.initEmpty = [=]
  {
    buffer->init(0, eDataType::eDT_Int16, g_foreign);
  };
  subject.initNone = [=]
  {
    buffer->init(5, eDataType::eDT_None, g_foreign + 32);
  };
  subject.initNull = [=]
  {
    buffer->init(3, eDataType::eDT_Int16, nullptr);
  };
  return subject;
}

Subject makeHybrid(const std::shared_ptr<HybridBuffer>& buffer)
{
  Subject subject;
  subject.buffer = buffer;
  subject.getBlock = [=]
  {
    return (*buffer.*memberOf(HybridBlock())).get();
  };
  subject.noMemory = "Memory allocation failed with requested size 10";
  subject.initMore = [=]
  {
    buffer->init(5, eDataType::eDT_Int16);
  };
  subject.initTooLarge = [=]
  {
    buffer->init(g_largest, eDataType::eDT_Int16);
  };
  return subject;
}

Subject makeHybridOwner()
{
  const auto buffer = std::make_shared<HybridBuffer>();
  Subject subject = makeHybrid(buffer);
  subject.init = [=]
  {
    buffer->init(3, eDataType::eDT_Int16);
  };
  subject.initEmpty = [=]
  {
    buffer->init(0, eDataType::eDT_Int16);
  };
  subject.initNone = [=]
  {
    buffer->init(5, eDataType::eDT_None);
  };
  subject.initNoneOtherwise = [=]
  {
    buffer->init(5, eDataType::eDT_None, g_foreign + 32);
  };
  return subject;
}

Subject makeHybridView()
{
  const auto buffer = std::make_shared<HybridBuffer>();
  Subject subject = makeHybrid(buffer);
  subject.init = [=]
  {
    buffer->init(3, eDataType::eDT_Int16, g_foreign);
  };
  subject.initEmpty = [=]
  {
    buffer->init(0, eDataType::eDT_Int16, g_foreign);
  };
  subject.initNone = [=]
  {
    buffer->init(5, eDataType::eDT_None, g_foreign + 32);
  };
  subject.initNoneOtherwise = [=]
  {
    buffer->init(5, eDataType::eDT_None);
  };
  subject.initNull = [=]
  {
    buffer->init(3, eDataType::eDT_Int16, nullptr);
  };
  return subject;
}

Subject makeFrag(const std::shared_ptr<FragHybridBuffer>& buffer)
{
  Subject subject;
  subject.buffer = buffer;
  subject.getBlock = [=]
  {
    return (*buffer.*memberOf(FragBlock())).get();
  };
  subject.noMemory = "Memory allocation failed with requested size 30";
  subject.noList = "Memory allocation failed with requested size 40";
  subject.initMore = [=]
  {
    buffer->init(eDataType::eDT_Int16, 5, 3);
  };
  subject.initTooLarge = [=]
  {
    buffer->init(eDataType::eDT_Int16, g_largest, g_largest);
  };
  return subject;
}

Subject makeFragOwner()
{
  const auto buffer = std::make_shared<FragHybridBuffer>();
  Subject subject = makeFrag(buffer);
  subject.init = [=]
  {
    buffer->init(eDataType::eDT_Int16, 3, 4);
  };
  subject.initEmpty = [=]
  {
    buffer->init(eDataType::eDT_Int16, 0, 4);
  };
  subject.initNone = [=]
  {
    buffer->init(eDataType::eDT_None, 2, 5);
  };
  subject.initNoneOtherwise = [=]
  {
    buffer->init(eDataType::eDT_None, BufferPtrColl{g_foreign + 48, g_foreign + 8}, 5);
  };
  subject.initMoreWithoutList = [=]
  {
    failAllocationAfter(1); // the block is the first
    buffer->init(eDataType::eDT_Int16, 5, 3);
  };
  return subject;
}

Subject makeFragView()
{
  const auto buffer = std::make_shared<FragHybridBuffer>();
  Subject subject = makeFrag(buffer);
  subject.init = [=]
  {
    buffer->init(eDataType::eDT_Int16, BufferPtrColl{g_foreign, g_foreign + 16, g_foreign + 32}, 4);
  };
  subject.initEmpty = [=]
  {
    buffer->init(eDataType::eDT_Int16, BufferPtrColl{}, 4);
  };
  subject.initNone = [=]
  {
    buffer->init(eDataType::eDT_None, BufferPtrColl{g_foreign + 48, g_foreign + 8}, 5);
  };
  subject.initNoneOtherwise = [=]
  {
    buffer->init(eDataType::eDT_None, 2, 5);
  };
  subject.initMoreWithoutList = [=]
  {
    const BufferPtrColl fragments(5, g_foreign);
    failAllocationAfter(0);
    buffer->init(eDataType::eDT_Int16, fragments, 3);
  };
  return subject;
}

struct Kind
{
  const char* name;
  Subject (*make)();
  const Table* table;
  // Of the owning buffers: the type, the bytes of one, of three and of five elements.
  const char* type;
  const char* base;
  const char* three;
  const char* five;
};

const Kind g_kinds[] = {
    {"TOwnBufferBool", &makeOwn<ipBool>, &g_ownTable, "eDT_Bool", "1", "3", "5"},
    {"TOwnBufferInt8", &makeOwn<ipInt8>, &g_ownTable, "eDT_Int8", "1", "3", "5"},
    {"TOwnBufferUInt8", &makeOwn<ipUInt8>, &g_ownTable, "eDT_UInt8", "1", "3", "5"},
    {"TOwnBufferInt16", &makeOwn<ipInt16>, &g_ownTable, "eDT_Int16", "2", "6", "10"},
    {"TOwnBufferUInt16", &makeOwn<ipUInt16>, &g_ownTable, "eDT_UInt16", "2", "6", "10"},
    {"TOwnBufferInt32", &makeOwn<ipInt32>, &g_ownTable, "eDT_Int32", "4", "12", "20"},
    {"TOwnBufferUInt32", &makeOwn<ipUInt32>, &g_ownTable, "eDT_UInt32", "4", "12", "20"},
    {"TOwnBufferInt64", &makeOwn<ipInt64>, &g_ownTable, "eDT_Int64", "8", "24", "40"},
    {"TOwnBufferUInt64", &makeOwn<ipUInt64>, &g_ownTable, "eDT_UInt64", "8", "24", "40"},
    {"TOwnBufferReal32", &makeOwn<ipReal32>, &g_ownTable, "eDT_Real32", "4", "12", "20"},
    {"TOwnBufferReal64", &makeOwn<ipReal64>, &g_ownTable, "eDT_Real64", "8", "24", "40"},
    {"TypedOwnBuffer", &makeTypedOwn, &g_ownTable, "eDT_UInt16", "2", "6", "10"},
    {"ExternalBuffer", &makeExternal, &g_externalTable, "", "", "", ""},
    {"HybridBufferOwner", &makeHybridOwner, &g_hybridOwnerTable, "", "", "", ""},
    {"HybridBufferView", &makeHybridView, &g_hybridViewTable, "", "", "", ""},
    {"FragHybridBufferOwner", &makeFragOwner, &g_fragOwnerTable, "", "", "", ""},
    {"FragHybridBufferView", &makeFragView, &g_fragViewTable, "", "", "", ""},
};

Subject makeSubject(const Kind& kind)
{
  Subject subject = kind.make();
  if (!subject.getBlock)
  {
    const auto buffer = std::dynamic_pointer_cast<BaseOwnBuffer>(subject.buffer);
    subject.getBlock = [=]
    {
      return (*buffer.*memberOf(OwnBlock())).get();
    };
    subject.noMemory = std::string("Memory allocation failed with requested size ") + kind.five;
  }
  return subject;
}

// States

/// Returns the message that a step raises; one of memory must have its cause.
std::string messageOfStep(const Subject::Step& step)
{
  try
  {
    step();
  }
  catch (const ORVELBaseDataException& failure)
  {
    failNoAllocation();
    EXPECT_EQ(isCausedByBadAlloc(failure), failure.getMessage().rfind("Memory", 0) == 0);
    return failure.getMessage();
  }
  failNoAllocation();
  return "";
}

std::string messageWithoutMemory(const Subject& subject)
{
  failArrayAllocationAfter(0);
  return messageOfStep(subject.initMore);
}

using Expected = std::string (*)(const Subject& subject);

std::string notRaised(const Subject&)
{
  return "";
}
std::string tooLarge(const Subject&)
{
  return g_tooLarge;
}
std::string noMemory(const Subject& subject)
{
  return subject.noMemory;
}
std::string noList(const Subject& subject)
{
  return subject.noList;
}
std::string none(const Subject&)
{
  return g_none;
}

struct State
{
  const char* name;
  Subject::Step Subject::*needed;               // what the kind must be able to
  std::string (*bring)(const Subject& subject); // into the state; returns what is raised on the way
  Expected raised;
  Column column;
};

const State g_states[] = {
    {"Fresh", &Subject::init, [](const Subject&) { return std::string(); }, &notRaised, nothing},
    {"Initialised", &Subject::init, [](const Subject& subject) { return messageOfStep(subject.init); },
     &notRaised, values},
    {"InitialisedTwice", &Subject::init,
     [](const Subject& subject)
     {
       subject.init();
       return messageOfStep(subject.init);
     },
     &notRaised, values},
    {"WithoutElements", &Subject::initEmpty,
     [](const Subject& subject) { return messageOfStep(subject.initEmpty); }, &notRaised, empty},
    {"Null", &Subject::initNull, [](const Subject& subject) { return messageOfStep(subject.initNull); },
     &notRaised, null},
    {"ClearedFresh", &Subject::init,
     [](const Subject& subject)
     {
       subject.buffer->clear();
       return std::string();
     },
     &notRaised, nothing},
    {"Cleared", &Subject::init,
     [](const Subject& subject)
     {
       subject.init();
       subject.buffer->clear();
       return std::string();
     },
     &notRaised, nothing},
    {"TooLargeFresh", &Subject::initTooLarge,
     [](const Subject& subject) { return messageOfStep(subject.initTooLarge); }, &tooLarge, nothing},
    {"TooLargeInitialised", &Subject::initTooLarge,
     [](const Subject& subject)
     {
       subject.init();
       return messageOfStep(subject.initTooLarge);
     },
     &tooLarge, nothing},
    {"NoMemoryFresh", &Subject::initMore,
     [](const Subject& subject) { return messageWithoutMemory(subject); }, &noMemory, nothing},
    {"NoMemoryInitialised", &Subject::initMore,
     [](const Subject& subject)
     {
       subject.init();
       return messageWithoutMemory(subject);
     },
     &noMemory, nothing},
    {"NoMemoryAndInitialised", &Subject::initMore,
     [](const Subject& subject)
     {
       std::string message = messageWithoutMemory(subject);
       subject.init();
       return message;
     },
     &noMemory, values},
    {"NoListFresh", &Subject::initMoreWithoutList,
     [](const Subject& subject) { return messageOfStep(subject.initMoreWithoutList); }, &noList, nothing},
    {"NoListInitialised", &Subject::initMoreWithoutList,
     [](const Subject& subject)
     {
       subject.init();
       return messageOfStep(subject.initMoreWithoutList);
     },
     &noList, nothing},
    {"NoneFresh", &Subject::initNone, [](const Subject& subject) { return messageOfStep(subject.initNone); },
     &none, refused},
    {"NoneInitialised", &Subject::initNone,
     [](const Subject& subject)
     {
       subject.init();
       return messageOfStep(subject.initNone);
     },
     &none, refusedValues},
    {"NoneOtherwiseInitialised", &Subject::initNoneOtherwise,
     [](const Subject& subject)
     {
       subject.init();
       return messageOfStep(subject.initNoneOtherwise);
     },
     &none, refusedOther},
    {"NoneAndCleared", &Subject::initNone,
     [](const Subject& subject)
     {
       subject.init();
       std::string message = messageOfStep(subject.initNone);
       subject.buffer->clear();
       return message;
     },
     &none, nothing},
    {"NoneAndInitialised", &Subject::initNone,
     [](const Subject& subject)
     {
       std::string message = messageOfStep(subject.initNone);
       subject.init();
       return message;
     },
     &none, values},
};

// Tests

struct Case
{
  const Kind* kind;
  const State* state;
};

std::ostream& operator<<(std::ostream& stream, const Case& shown)
{
  return stream << shown.kind->name << ", " << shown.state->name;
}

std::vector<Case> allCases()
{
  std::vector<Case> cases;
  for (const Kind& kind : g_kinds)
  {
    const Subject subject = makeSubject(kind);
    for (const State& state : g_states)
      if (subject.*state.needed)
        cases.push_back({&kind, &state});
  }
  return cases;
}

std::string expectedAnswersOf(const Kind& kind, Column column)
{
  const auto replace = [](std::string& text, const std::string& placeholder, const char* replacement)
  {
    if (const std::size_t place = text.find(placeholder); place != std::string::npos)
      text.replace(place, placeholder.size(), replacement);
  };
  std::string lines;
  for (const Row& row : *kind.table)
  {
    std::string text = row.texts[column];
    replace(text, "{type}", kind.type);
    replace(text, "{base}", kind.base);
    replace(text, "{three}", kind.three);
    lines += std::string(row.accessor) + ": " + text + "\n";
  }
  return lines;
}

class BufferStates : public testing::TestWithParam<Case>
{
};

INSTANTIATE_TEST_SUITE_P(Each, BufferStates, testing::ValuesIn(allCases()),
                         [](const auto& shown)
                         { return std::string(shown.param.kind->name) + "_" + shown.param.state->name; });

TEST_P(BufferStates, AnswerAsTheTableSays)
{
  const std::ptrdiff_t nbBlocks = getNbBlocksInUse();
  {
    const Subject subject = makeSubject(*GetParam().kind);
    EXPECT_EQ(GetParam().state->bring(subject), GetParam().state->raised(subject));
    EXPECT_EQ(answersOf(subject), expectedAnswersOf(*GetParam().kind, GetParam().state->column));
  }
  EXPECT_EQ(getNbBlocksInUse(), nbBlocks);
}

} // namespace
