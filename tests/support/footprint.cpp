#include "footprint.h"

#include <gtest/gtest.h>

#include <fstream>
#include <regex>
#include <sstream>
#include <stdexcept>

namespace test {
namespace {

std::string text_of(const std::string& path) {
  std::ifstream file(PQX_SOURCE_DIR "/" + path);
  if (!file) throw std::runtime_error("cannot read " + path);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::string> found(const std::string& text, const char* pattern) {
  const std::regex regex(pattern);
  return {std::sregex_token_iterator(text.begin(), text.end(), regex, 1), {}};
}

/// Evaluates integer expressions as C does, of those of its signs that the page needs.
class Expression {
 public:
  using Lookup = std::function<int64_t(const std::string&)>;
  Expression(const std::string& text, const Lookup& lookup) : text_(text), lookup_(lookup) {}

  int64_t value() {
    const int64_t result = choice();
    if (peek() != '\0') throw std::runtime_error("cannot read \"" + text_ + "\" from " + std::to_string(at_));
    return result;
  }

 private:
  char peek() {
    while (at_ < text_.size() && text_[at_] == ' ') ++at_;
    return at_ < text_.size() ? text_[at_] : '\0';
  }
  bool take(const std::string& sign) {
    peek();
    if (text_.compare(at_, sign.size(), sign) != 0) return false;
    at_ += sign.size();
    return true;
  }
  void need(const std::string& sign) {
    if (!take(sign)) throw std::runtime_error("no " + sign + " in \"" + text_ + "\"");
  }
  int64_t choice() {
    const int64_t condition = binary(0);
    if (!take("?")) return condition;
    const int64_t yes = choice();
    need(":");
    const int64_t no = choice();
    return condition ? yes : no;
  }
  int64_t binary(size_t level) {
    using Sign = std::pair<const char*, std::function<int64_t(int64_t, int64_t)>>;
    static const std::vector<std::vector<Sign>> levels = {
        {{"||", std::logical_or<>()}},
        {{"==", std::equal_to<>()}},
        {{"<", std::less<>()}, {">", std::greater<>()}},
        {{"&", std::bit_and<>()}},
        {{">>", [](int64_t a, int64_t b) { return a >> b; }}},
        {{"+", std::plus<>()}, {"-", std::minus<>()}},
        {{"*", std::multiplies<>()}, {"/", std::divides<>()}, {"%", std::modulus<>()}}};
    if (level == levels.size()) return primary();
    int64_t left = binary(level + 1);
    for (;;) {
      const auto sign =
          std::find_if(levels[level].begin(), levels[level].end(), [&](const Sign& s) { return take(s.first); });
      if (sign == levels[level].end()) return left;
      left = sign->second(left, binary(level + 1));
    }
  }
  int64_t primary() {
    if (take("(")) {
      const int64_t value = choice();
      need(")");
      return value;
    }
    peek();
    const size_t begin = at_;
    while (at_ < text_.size() && (std::isalnum(text_[at_]) || text_[at_] == '_')) ++at_;
    const std::string word = text_.substr(begin, at_ - begin);
    if (word.empty()) throw std::runtime_error("a value is missing in \"" + text_ + "\"");
    if (std::isdigit(word[0])) return std::stoll(word);
    if (word != "max") return lookup_(word);
    need("(");
    const int64_t a = choice();
    need(",");
    const int64_t b = choice();
    need(")");
    return std::max(a, b);
  }

  const std::string& text_;
  const Lookup& lookup_;
  size_t at_ = 0;
};

std::string function_of(const Operation& operation) {
  return operation.name.rfind("pqx_", 0) == 0 ? operation.name : "pqx_Video_" + operation.name;
}

std::vector<std::string> split(const std::string& text, const std::string& separator) {
  std::vector<std::string> parts;
  size_t begin = 0;
  for (size_t end; (end = text.find(separator, begin)) != std::string::npos; begin = end + separator.size())
    parts.push_back(text.substr(begin, end - begin));
  parts.push_back(text.substr(begin));
  return parts;
}

std::map<std::string, Footprint> read_page() {
  std::map<std::string, Footprint> functions;
  std::vector<std::string> names;
  bool in_definitions = false;
  std::istringstream page(text_of("docs/pages/footprints.md"));
  for (std::string line; std::getline(page, line);) {
    if (line.rfind("pqx_Video", 0) == 0) names = found(line, "(pqx_\\w+)\\(\\)");
    if (line.empty() || line[0] == '#') in_definitions = false;
    if (line[0] == '#') names.clear();
    if (line.rfind("with `", 0) == 0) in_definitions = true;
    const std::vector<std::string> code = found(line, "`([^`]*)`");
    if (in_definitions)
      for (const std::string& definition : code)
        for (const std::string& name : names)
          functions[name].definitions[definition.substr(0, definition.find(" = "))] =
              definition.substr(definition.find(" = ") + 3);
    if (line.rfind("| `", 0) == 0 && !names.empty())
      for (size_t k = 0; k + 1 < code.size(); ++k)
        for (const std::string& name : names)
          functions[name].arguments[code[k]] = {line.find("| reads") != std::string::npos,
                                                line.find("writes |") != std::string::npos, code.back()};
  }
  return functions;
}

}  // namespace

const std::map<std::string, Footprint>& Footprint::all() {
  static const std::map<std::string, Footprint> functions = read_page();
  return functions;
}

std::vector<Footprint::Rows> Footprint::rows(const std::string& argument,
                                             const std::map<std::string, int64_t>& values) const {
  Expression::Lookup lookup = [&](const std::string& name) -> int64_t {
    if (const auto d = definitions.find(name); d != definitions.end()) return Expression(d->second, lookup).value();
    if (const auto v = values.find(name); v != values.end()) return v->second;
    throw std::runtime_error("nothing is called " + name);
  };
  const auto evaluate = [&](const std::string& text) { return Expression(text, lookup).value(); };
  std::vector<Rows> all;
  for (const std::string& part : split(arguments.at(argument).formula, " and ")) {
    const auto places = split(part, ", from ");
    Rows rows = {1, 0, 0, 0};
    if (const auto lines = split(places[0], " rows of "); lines.size() == 2) {
      const size_t comma = lines[1].rfind(", ");
      rows.count = evaluate(lines[0]);
      rows.bytes = evaluate(lines[1].substr(0, comma));
      rows.apart = evaluate(lines[1].substr(comma + 2, lines[1].rfind(" apart") - comma - 2));
    } else {
      rows.bytes = evaluate(places[0]);
    }
    for (const std::string& offset : split(places.size() > 1 ? places[1] : "0", ", ")) {
      rows.offset = evaluate(offset);
      all.push_back(rows);
    }
  }
  return all;
}

const std::map<std::string, std::vector<Parameter>>& declared_functions() {
  static const auto functions = [] {
    std::map<std::string, std::vector<Parameter>> all;
    const std::string header = text_of("include/pqx_video.h");
    const std::regex declaration("\nPQX_API [^;(]*?\\b(pqx_Video\\w+)\\(([^)]*)\\);"),
        parameter("\\s*([^,]*?)(\\w+)\\s*(,|$)");
    for (std::sregex_iterator i(header.begin(), header.end(), declaration), end; i != end; ++i) {
      const std::string list = (*i)[2];
      for (std::sregex_iterator p(list.begin(), list.end(), parameter); p != end; ++p)
        all[(*i)[1]].push_back({(*p)[1], (*p)[2]});
    }
    return all;
  }();
  return functions;
}

std::vector<Span> joined(std::vector<Span> spans) {
  std::erase_if(spans, [](const Span& s) { return s.bytes <= 0; });
  std::sort(spans.begin(), spans.end(), [](const Span& a, const Span& b) { return a.offset < b.offset; });
  std::vector<Span> result;
  for (const Span& s : spans)
    if (!result.empty() && s.offset <= result.back().offset + result.back().bytes)
      result.back().bytes = std::max(result.back().bytes, s.offset + s.bytes - result.back().offset);
    else
      result.push_back(s);
  return result;
}

std::vector<Span> joined(const std::vector<Footprint::Rows>& rows) {
  std::vector<Span> spans;
  for (const Footprint::Rows& r : rows)
    for (int64_t row = 0; row < r.count && r.bytes > 0; ++row) spans.push_back({r.offset + row * r.apart, r.bytes});
  return joined(std::move(spans));
}

std::vector<std::vector<Footprint::Rows>> rows_by_manual(const Operation& operation, Ints ints) {
  const std::string function = function_of(operation);
  const auto footprint = Footprint::all().find(function);
  if (footprint == Footprint::all().end()) return {};
  const std::vector<Parameter>& parameters = declared_functions().at(function);
  std::map<std::string, int64_t> values;
  for (size_t k = 0; k < ints.size(); ++k)
    if (!operation.arguments[k].is_pointer) values[parameters[k].name] = ints[k];
  std::vector<std::vector<Footprint::Rows>> rows(ints.size());
  for (size_t k = 0; k < ints.size(); ++k)
    if (operation.arguments[k].is_pointer) rows[k] = footprint->second.rows(parameters[k].name, values);
  return rows;
}

void compare_with_manual(const Operation& operation, Ints ints) {
  if (::testing::Test::HasFailure()) return;
  const auto rows = rows_by_manual(operation, ints);
  for (size_t k = 0; k < rows.size(); ++k)
    if (const Argument& a = operation.arguments[k]; a.is_pointer && joined(a.spans(ints)) != joined(rows[k])) {
      const std::string function = function_of(operation), name = declared_functions().at(function)[k].name;
      ADD_FAILURE() << call(operation, ints) << ", " << name << ": the manual has "
                    << Footprint::all().at(function).arguments.at(name).formula << ", which is not what is touched";
    }
}

}  // namespace test
