// Compares the libraries that could stand behind XmlIArchive: time and peak memory for reading one large
// archive. Every reader hands each name, attribute and text to the same consumer, as an archive would
// receive them, and the consumer's checksums must agree.
//
//   XmlParserChoice [megabytes [runs]]

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iostream>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/resource.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include <expat.h>
#include <libxml/xmlreader.h>
#include <pugixml.hpp>

namespace
{

constexpr std::size_t g_pieceSize = 65536;

// ---------------------------------------------------------------------------------------- the input

class Generator
{
public:
  explicit Generator(const std::string& path)
    : _file(path, std::ios::binary)
  {
    _file << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<orvelArchive format=\"1\">\n";
  }

  void fill(std::size_t sizeInBytes)
  {
    block(sizeInBytes / 25);
    while (_written < sizeInBytes)
    {
      put("  <object key=\"_kernel\">\n");
      put("    <section name=\"orvel::KernelXY\">\n      <item key=\"version\">2</item>\n    </section>\n");
      for (int i = 0; i < 200; ++i)
      {
        item("_x", std::to_string(i - 100));
        item("_y", std::to_string(static_cast<int>(_random() % 2001U) - 1000));
        item("_coef", number());
      }
      put("  </object>\n");
      for (int i = 0; i < 10; ++i)
      {
        put("  <pointer key=\"value\" id=\"" + std::to_string(++_id) +
            "\" class=\"orvel::ElementsRange\">\n");
        item("_startOffset", std::to_string(_random()));
        item("_nbElements", std::to_string(_random() % 100000U));
        put("  </pointer>\n");
        put("  <pointer key=\"value\" ref=\"" + std::to_string(1U + _random() % _id) + "\"/>\n");
      }
    }
    _file << "</orvelArchive>\n";
    _file.close();
    if (!_file)
    {
      throw std::runtime_error("cannot write the input file");
    }
  }

private:
  void put(const std::string& text)
  {
    _file << text;
    _written += text.size();
  }

  void item(const char* key, const std::string& text)
  {
    put(std::string("    <item key=\"") + key + "\">" + text + "</item>\n");
  }

  std::string number()
  {
    std::array<char, 32> text{};
    const float value = std::uniform_real_distribution<float>(-1.0F, 1.0F)(_random);
    return std::string(text.data(), std::to_chars(text.data(), text.data() + text.size(), value).ptr);
  }

  void block(std::size_t sizeInBytes)
  {
    constexpr std::string_view digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    put("  <block size=\"" + std::to_string(sizeInBytes / 76 * 57) + "\">\n");
    for (std::size_t line = 0; line < sizeInBytes / 76; ++line)
    {
      std::string text(76, '\n');
      std::generate(text.begin(), text.end(), [&] { return digits[_random() % 64U]; });
      put(text + "\n");
    }
    put("  </block>\n");
  }

  std::ofstream _file;
  std::mt19937 _random{20240229U};
  std::size_t _written = 0;
  unsigned _id = 0;
};

// ------------------------------------------------------------------------------------- the consumer

class Consumer
{
public:
  void start(std::string_view name) { take(1, name); }
  void attribute(std::string_view name, std::string_view value)
  {
    take(2, name);
    take(3, value);
  }
  void text(std::string_view value)
  {
    // Between elements there is only layout.
    if (value.find_first_not_of(" \n\t\r") != std::string_view::npos)
    {
      take(4, value);
    }
  }
  void end(std::string_view name) { take(5, name); }

  std::uint64_t sum() const { return _sum; }

private:
  void take(std::uint64_t kind, std::string_view value)
  {
    _sum = (_sum ^ (std::hash<std::string_view>()(value) + kind)) * 0x9E3779B97F4A7C15U;
  }

  std::uint64_t _sum = 0;
};

// -------------------------------------------------------------------------------------- the readers

class InputFile
{
public:
  explicit InputFile(const char* path)
    : _file(std::fopen(path, "rb"))
  {
    if (_file == nullptr)
    {
      throw std::runtime_error("cannot open the input file");
    }
    static_cast<void>(std::setvbuf(_file, nullptr, _IONBF, 0));
  }
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;
  ~InputFile() { static_cast<void>(std::fclose(_file)); }

  std::size_t read(void* data, std::size_t sizeInBytes) { return std::fread(data, 1, sizeInBytes, _file); }

private:
  std::FILE* _file;
};

std::uint64_t readPlainly(const char* path)
{
  InputFile file(path);
  std::vector<char> piece(g_pieceSize);
  std::uint64_t sum = 0;
  while (const std::size_t size = file.read(piece.data(), piece.size()))
  {
    sum += size;
  }
  return sum;
}

/// Pieces of the file become tokens in a queue that is emptied before the next piece is read. All texts
/// of a queue lie in one buffer, so that a token costs no allocation of its own.
class ExpatReader
{
public:
  explicit ExpatReader(const char* path)
    : _file(path)
    , _parser(XML_ParserCreate("UTF-8"))
  {
    XML_SetUserData(_parser, this);
    XML_SetElementHandler(_parser, &ExpatReader::onStart, &ExpatReader::onEnd);
    XML_SetCharacterDataHandler(_parser, &ExpatReader::onText);
  }
  ExpatReader(const ExpatReader&) = delete;
  ExpatReader& operator=(const ExpatReader&) = delete;
  ~ExpatReader() { XML_ParserFree(_parser); }

  std::uint64_t run()
  {
    Consumer consumer;
    std::string pendingText;
    do
    {
      readPiece();
      for (std::size_t i = 0; i < _tokens.size(); ++i)
      {
        const Token& token = _tokens[i];
        const std::string_view value(_buffer.data() + token.start, token.size);
        if (token.kind == Kind::eText)
        {
          pendingText += value;
          continue;
        }
        consumer.text(pendingText);
        pendingText.clear();
        if (token.kind == Kind::eStart)
        {
          consumer.start(value);
        }
        else if (token.kind == Kind::eEnd)
        {
          consumer.end(value);
        }
        else
        {
          const Token& next = _tokens[++i];
          consumer.attribute(value, std::string_view(_buffer.data() + next.start, next.size));
        }
      }
    } while (!_isFinal);
    return consumer.sum();
  }

private:
  enum class Kind
  {
    eStart,
    eEnd,
    eAttributeName,
    eAttributeValue,
    eText
  };
  struct Token
  {
    Kind kind;
    std::size_t start;
    std::size_t size;
  };

  void readPiece()
  {
    _tokens.clear();
    _buffer.clear();
    void* piece = XML_GetBuffer(_parser, static_cast<int>(g_pieceSize));
    const std::size_t size = piece == nullptr ? 0 : _file.read(piece, g_pieceSize);
    _isFinal = size < g_pieceSize;
    if (piece == nullptr ||
        XML_ParseBuffer(_parser, static_cast<int>(size), _isFinal ? XML_TRUE : XML_FALSE) != XML_STATUS_OK)
    {
      throw std::runtime_error("expat failed");
    }
  }

  void push(Kind kind, const char* text, std::size_t size)
  {
    _tokens.push_back(Token{kind, _buffer.size(), size});
    _buffer.append(text, size);
  }

  static void XMLCALL onStart(void* self, const XML_Char* name, const XML_Char** attributes)
  {
    auto& reader = *static_cast<ExpatReader*>(self);
    reader.push(Kind::eStart, name, std::strlen(name));
    for (; *attributes != nullptr; attributes += 2)
    {
      reader.push(Kind::eAttributeName, attributes[0], std::strlen(attributes[0]));
      reader.push(Kind::eAttributeValue, attributes[1], std::strlen(attributes[1]));
    }
  }
  static void XMLCALL onEnd(void* self, const XML_Char* name)
  {
    static_cast<ExpatReader*>(self)->push(Kind::eEnd, name, std::strlen(name));
  }
  static void XMLCALL onText(void* self, const XML_Char* text, int size)
  {
    static_cast<ExpatReader*>(self)->push(Kind::eText, text, static_cast<std::size_t>(size));
  }

  InputFile _file;
  XML_Parser _parser;
  std::vector<Token> _tokens;
  std::string _buffer;
  bool _isFinal = false;
};

const char* asChars(const xmlChar* text)
{
  return reinterpret_cast<const char*>(text);
}

std::uint64_t readWithLibxml2(const char* path)
{
  InputFile file(path);
  const auto read = [](void* context, char* data, int size)
  {
    return static_cast<int>(static_cast<InputFile*>(context)->read(data, static_cast<std::size_t>(size)));
  };
  xmlTextReaderPtr reader =
      xmlReaderForIO(read, nullptr, &file, path, nullptr, XML_PARSE_HUGE | XML_PARSE_NONET);
  if (reader == nullptr)
  {
    throw std::runtime_error("libxml2 cannot read");
  }
  Consumer consumer;
  int result = 0;
  while ((result = xmlTextReaderRead(reader)) == 1)
  {
    switch (xmlTextReaderNodeType(reader))
    {
    case XML_READER_TYPE_ELEMENT:
    {
      const char* name = asChars(xmlTextReaderConstLocalName(reader));
      const bool isEmpty = xmlTextReaderIsEmptyElement(reader) == 1;
      consumer.start(name);
      while (xmlTextReaderMoveToNextAttribute(reader) == 1)
      {
        consumer.attribute(asChars(xmlTextReaderConstLocalName(reader)),
                           asChars(xmlTextReaderConstValue(reader)));
      }
      if (isEmpty)
      {
        consumer.end(name);
      }
      break;
    }
    case XML_READER_TYPE_END_ELEMENT:
      consumer.end(asChars(xmlTextReaderConstLocalName(reader)));
      break;
    case XML_READER_TYPE_TEXT:
      consumer.text(asChars(xmlTextReaderConstValue(reader)));
      break;
    default:
      break;
    }
  }
  xmlFreeTextReader(reader);
  if (result != 0)
  {
    throw std::runtime_error("libxml2 failed");
  }
  return consumer.sum();
}

void walk(const pugi::xml_node& node, Consumer& consumer)
{
  if (node.type() != pugi::node_element)
  {
    consumer.text(node.value());
    return;
  }
  consumer.start(node.name());
  for (const pugi::xml_attribute& attribute : node.attributes())
  {
    consumer.attribute(attribute.name(), attribute.value());
  }
  for (const pugi::xml_node& child : node.children())
  {
    walk(child, consumer);
  }
  consumer.end(node.name());
}

std::uint64_t readWithPugixml(const char* path)
{
  pugi::xml_document document;
  if (!document.load_file(path))
  {
    throw std::runtime_error("pugixml failed");
  }
  Consumer consumer;
  walk(document.document_element(), consumer);
  return consumer.sum();
}

std::uint64_t readWith(std::string_view parser, const char* path)
{
  if (parser == "expat")
  {
    return ExpatReader(path).run();
  }
  if (parser == "libxml2")
  {
    return readWithLibxml2(path);
  }
  return parser == "pugixml" ? readWithPugixml(path) : readPlainly(path);
}

// -------------------------------------------------------------------------------------- measurement

struct Run
{
  double seconds = 0;
  double cpuSeconds = 0;
  std::uint64_t sum = 0;
};

double cpuSeconds()
{
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  const auto seconds = [](const timeval& t)
  {
    return static_cast<double>(t.tv_sec) + 1e-6 * static_cast<double>(t.tv_usec);
  };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

/// Reads once in a process of its own, so that the peak is that of this reader alone.
Run measure(const std::string& parser, const std::string& path, long& peakKiB)
{
  std::array<int, 2> ends{};
  if (pipe(ends.data()) != 0)
  {
    throw std::runtime_error("no pipe");
  }
  const pid_t child = fork();
  if (child == 0)
  {
    Run run;
    try
    {
      const double cpu = cpuSeconds();
      const auto start = std::chrono::steady_clock::now();
      run.sum = readWith(parser, path.c_str());
      run.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
      run.cpuSeconds = cpuSeconds() - cpu;
    }
    catch (const std::exception& error)
    {
      std::cerr << error.what() << '\n';
      _exit(1);
    }
    _exit(write(ends[1], &run, sizeof(run)) == static_cast<ssize_t>(sizeof(run)) ? 0 : 1);
  }
  close(ends[1]);
  Run run;
  const bool isComplete = read(ends[0], &run, sizeof(run)) == static_cast<ssize_t>(sizeof(run));
  close(ends[0]);
  int status = 0;
  rusage usage{};
  if (child < 0 || wait4(child, &status, 0, &usage) != child || status != 0 || !isComplete)
  {
    throw std::runtime_error(parser + " did not finish");
  }
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-union-access): the C library has it so
  peakKiB = std::max(peakKiB, usage.ru_maxrss);
  return run;
}

double median(std::vector<double> values)
{
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

int compare(std::size_t megabytes, int nbRuns)
{
  const std::string path = "XmlParserChoice." + std::to_string(getpid()) + ".xml";
  Generator(path).fill(megabytes * 1000 * 1000);

  const std::array<std::string, 4> parsers{"read", "expat", "libxml2", "pugixml"};
  std::array<std::vector<double>, 4> seconds;
  std::array<std::vector<double>, 4> cpu;
  std::array<long, 4> peakKiB{};
  std::array<std::uint64_t, 4> sums{};
  for (int run = 0; run < nbRuns; ++run)
  {
    for (std::size_t i = 0; i < parsers.size(); ++i)
    {
      const Run result = measure(parsers[i], path, peakKiB[i]);
      seconds[i].push_back(result.seconds);
      cpu[i].push_back(result.cpuSeconds);
      sums[i] = result.sum;
    }
  }
  static_cast<void>(std::remove(path.c_str()));

  std::printf("%zu MB of archive, %d runs each, medians\n", megabytes, nbRuns);
  std::printf("%-10s %10s %10s %10s %12s\n", "reader", "wall ms", "cpu ms", "MB/s", "peak MiB");
  for (std::size_t i = 0; i < parsers.size(); ++i)
  {
    std::printf("%-10s %10.1f %10.1f %10.0f %12.1f\n", parsers[i].c_str(), 1000 * median(seconds[i]),
                1000 * median(cpu[i]), static_cast<double>(megabytes) / median(seconds[i]),
                static_cast<double>(peakKiB[i]) / 1024.0);
  }
  if (sums[1] != sums[2] || sums[1] != sums[3])
  {
    std::cerr << "the readers disagree about the content\n";
    return 1;
  }
  return 0;
}

} // namespace

int main(int argc, char** argv)
{
  try
  {
    const std::size_t megabytes = argc > 1 ? std::stoul(argv[1]) : 50;
    const int nbRuns = argc > 2 ? std::stoi(argv[2]) : 9;
    return compare(megabytes, nbRuns);
  }
  catch (const std::exception& error)
  {
    std::cerr << error.what() << '\n';
    return 1;
  }
}
