#pragma once

/// \file
/// \brief Archives that write down what is asked of them: what a class or an item operator does, call by
/// call.

#include <deque>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include <ORVELSerialization/BaseIArchive.h>
#include <ORVELSerialization/BaseOArchive.h>
#include <ORVELSerialization/BaseSerializationObject.h>

namespace orvel::test
{

using Calls = std::vector<std::string>;

enum class Kind
{
  elementWise,
  blocks
};

/// \brief Return the text of a number as the records hold it.
template <class Number>
std::string numberText(Number number)
{
  return std::to_string(number);
}

/// \brief Writes every call down. An object in place is asked to write itself, a shared one is not.
class RecordingOArchive : public BaseOArchive
{
public:
  explicit RecordingOArchive(Kind kind = Kind::blocks)
    : BaseOArchive("recording")
    , _kind(kind)
  {
  }

  bool isElementWise() const override { return _kind == Kind::elementWise; }

  void writeBlock(const void* data, ipUInt64 sizeInBytes) override
  {
    record("block of " + std::to_string(sizeInBytes) + " bytes");
    blockData = data;
  }
  void writeObjectPtr(const SerializationOItem<SerializationObjectPtr>& item) override
  {
    record("pointer " + item.getKey() + " " + (item.getValue() ? item.getValue()->getClassName() : "null"));
    pointers.push_back(item.getValue());
  }
  void writeObject(const std::string& key, const BaseSerializationObject& object) override
  {
    record("object " + key + " {");
    object.write(*this);
    record("}");
  }
  void writeBool(const std::string& key, bool value) override
  {
    record("bool " + key + " " + (value ? "true" : "false"));
  }
  void writeInteger(const std::string& key, ipInt64 value) override
  {
    record("integer " + key + " " + std::to_string(value));
  }
  void writeUnsigned(const std::string& key, ipUInt64 value) override
  {
    record("unsigned " + key + " " + std::to_string(value));
  }
  void writeReal32(const std::string& key, ipReal32 value) override
  {
    record("real32 " + key + " " + numberText(value));
  }
  void writeReal64(const std::string& key, ipReal64 value) override
  {
    record("real64 " + key + " " + numberText(value));
  }
  void writeString(const std::string& key, std::string_view value) override
  {
    record("string " + key + " " + std::string(value));
  }
  void close() override { record("close"); }

  Calls calls;
  const void* blockData = nullptr; ///< of the last block
  std::vector<SerializationObjectPtr> pointers;
  int sectionThatFails = 0; ///< the closing of the n-th section throws, 0 for none

protected:
  void openSection(std::string_view name) override { record("section " + std::string(name) + " {"); }
  void closeSection() override
  {
    calls.emplace_back("}"); // also after a failure: what closes is to be seen
    if (++_nbClosed == sectionThatFails)
      throw std::runtime_error("the section can't be closed");
  }
  std::string getPlace() const override { return "call " + std::to_string(calls.size()); }

private:
  void record(std::string call)
  {
    checkOpen();
    calls.push_back(std::move(call));
  }

  Kind _kind;
  int _nbClosed = 0;
};

/// \brief Writes every call down and answers from a list of values.
class RecordingIArchive : public BaseIArchive
{
public:
  using Value =
      std::variant<bool, ipInt64, ipUInt64, ipReal32, ipReal64, std::string, SerializationObjectPtr>;

  explicit RecordingIArchive(Kind kind = Kind::blocks, std::deque<Value> givenAnswers = {})
    : BaseIArchive("recording")
    , answers(std::move(givenAnswers))
    , _kind(kind)
  {
  }

  bool isElementWise() const override { return _kind == Kind::elementWise; }

  void readBlock(void* data, ipUInt64 sizeInBytes) override
  {
    record("block of " + std::to_string(sizeInBytes) + " bytes");
    const auto bytes = answer<std::string>();
    if (bytes.size() != sizeInBytes)
      throw std::logic_error("the answer has another size");
    bytes.copy(static_cast<char*>(data), bytes.size());
  }
  void readObjectPtr(const SerializationIItem<SerializationObjectPtr>& item) override
  {
    record("pointer " + item.getKey());
    item.getValue() = answer<SerializationObjectPtr>();
  }
  void readObject(const std::string& key, BaseSerializationObject& object) override
  {
    record("object " + key + " {");
    object.read(*this);
    record("}");
  }
  bool readBool(const std::string& key) override
  {
    record("bool " + key);
    return answer<bool>();
  }
  ipInt64 readInteger(const std::string& key, ipInt64 minimum, ipInt64 maximum) override
  {
    record("integer " + key + " [" + std::to_string(minimum) + ", " + std::to_string(maximum) + "]");
    return answer<ipInt64>();
  }
  ipUInt64 readUnsigned(const std::string& key, ipUInt64 maximum) override
  {
    record("unsigned " + key + " [0, " + std::to_string(maximum) + "]");
    return answer<ipUInt64>();
  }
  ipReal32 readReal32(const std::string& key) override
  {
    record("real32 " + key);
    return answer<ipReal32>();
  }
  ipReal64 readReal64(const std::string& key) override
  {
    record("real64 " + key);
    return answer<ipReal64>();
  }
  void readString(const std::string& key, std::string& value) override
  {
    record("string " + key);
    value = answer<std::string>();
  }
  void close() override { record("close"); }

  Calls calls;
  std::deque<Value> answers;
  ipUInt64 nbBytesLeft = ipUInt64{1} << 60U; ///< what the archive says that it still holds
  ipUInt64 minItemSize = 1;
  ipUInt64 position = 0;

protected:
  void openSection(std::string_view name) override { record("section " + std::string(name) + " {"); }
  void closeSection() override { calls.emplace_back("}"); }
  std::string getPlace() const override { return "call " + std::to_string(calls.size()); }
  bool holds(ipUInt64 sizeInBytes) override { return sizeInBytes <= nbBytesLeft; }
  ipUInt64 getMinItemSize() const override { return minItemSize; }
  ipUInt64 getPosition() const override { return position; }

private:
  void record(std::string call)
  {
    checkOpen();
    calls.push_back(std::move(call));
  }

  template <class T>
  T answer()
  {
    if (answers.empty())
      throw std::logic_error("there is no answer left");
    const T value = std::get<T>(answers.front());
    answers.pop_front();
    return value;
  }

  Kind _kind;
};

} // namespace orvel::test
