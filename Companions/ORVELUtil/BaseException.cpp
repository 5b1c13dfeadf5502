#include "ORVELUtil/BaseException.h"

#include <new>
#include <typeinfo>
#include <utility>

#include <ORVELUtil/UnHandleException.h>

namespace orvel
{

namespace
{

/// The text of a standard exception of any type.
class StandardCause : public std::exception
{
public:
  explicit StandardCause(const char* what)
    : _what(what == nullptr ? "" : what)
  {
  }

  const char* what() const noexcept override { return _what.c_str(); }

private:
  std::string _what;
};

std::shared_ptr<const std::exception> keep(const BaseException& cause)
{
  if (const auto* unknown = dynamic_cast<const UnHandleException*>(&cause))
    return std::make_shared<UnHandleException>(*unknown);
  return std::make_shared<BaseException>(cause);
}

std::shared_ptr<const std::exception> keep(const std::exception& cause)
{
  if (const auto* ours = dynamic_cast<const BaseException*>(&cause))
    return keep(*ours);
  if (typeid(cause) == typeid(std::bad_alloc))
    return std::make_shared<std::bad_alloc>();
  if (typeid(cause) == typeid(std::bad_array_new_length)) // the std::bad_alloc of sizes that no block has
    return std::make_shared<std::bad_array_new_length>();
  return std::make_shared<StandardCause>(cause.what());
}

} // namespace

struct BaseException::Texts
{
  Texts(const std::string& messageText, const char* functionText, const char* fileText,
        unsigned int lineNumber, std::shared_ptr<const std::exception> keptCause)
    : message(messageText)
    , function(functionText == nullptr ? "" : functionText)
    , file(fileText == nullptr ? "" : fileText)
    , line(lineNumber)
    , cause(std::move(keptCause))
    , what(message)
  {
    std::string place = function;
    if (!file.empty())
      place += (place.empty() ? "" : ", ") + file + ":" + std::to_string(line);
    if (!place.empty())
      what += " [" + place + "]";
    if (cause)
      what += std::string("; cause: ") + cause->what();
  }

  std::string message;
  std::string function;
  std::string file;
  unsigned int line;
  std::shared_ptr<const std::exception> cause;
  std::string what;
};

BaseException::BaseException(const std::string& message, const char* function, const char* file,
                             unsigned int line)
  : _texts(std::make_shared<Texts>(message, function, file, line, nullptr))
{
}

BaseException::BaseException(const std::string& message, const char* function, const char* file,
                             unsigned int line, const BaseException& cause)
  : _texts(std::make_shared<Texts>(message, function, file, line, keep(cause)))
{
}

BaseException::BaseException(const std::string& message, const char* function, const char* file,
                             unsigned int line, const std::exception& cause)
  : _texts(std::make_shared<Texts>(message, function, file, line, keep(cause)))
{
}

BaseException::BaseException(const BaseException& other) noexcept = default;
BaseException& BaseException::operator=(const BaseException& other) noexcept = default;
BaseException::~BaseException() noexcept = default;

const char* BaseException::what() const noexcept
{
  return _texts->what.c_str();
}

const std::string& BaseException::getMessage() const noexcept
{
  return _texts->message;
}

const std::string& BaseException::getFunction() const noexcept
{
  return _texts->function;
}

const std::string& BaseException::getFile() const noexcept
{
  return _texts->file;
}

unsigned int BaseException::getLine() const noexcept
{
  return _texts->line;
}

const std::exception* BaseException::getCause() const noexcept
{
  return _texts->cause.get();
}

} // namespace orvel
