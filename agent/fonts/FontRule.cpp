#include "agent/fonts/FontRule.h"

#include <optional>
#include <vector>

namespace agent {

namespace {

struct Token {
  enum class Kind { kEnd, kWord, kQuoted, kOperator, kOpen, kClose } kind = Kind::kEnd;
  std::string text;
  size_t at = 0;  // bytes from the start of the rule
};

[[noreturn]] void Fail(const std::string& what, size_t at) {
  throw RuleError(what + " at character " + std::to_string(at + 1) + " of the rule");
}

class Scanner {
 public:
  explicit Scanner(std::string_view text) : text_(text) {}

  Token Next() {
    while (at_ < text_.size() && kSpace.find(text_[at_]) != std::string_view::npos) ++at_;
    const size_t start = at_;
    if (at_ == text_.size()) return {Token::Kind::kEnd, "", start};
    const char c = text_[at_];
    if (c == '(' || c == ')') {
      ++at_;
      return {c == '(' ? Token::Kind::kOpen : Token::Kind::kClose, std::string(1, c), start};
    }
    if (c == '"') return {Token::Kind::kQuoted, Quoted(), start};
    if (kOperators.find(c) != std::string_view::npos) {
      return {Token::Kind::kOperator, Run([](char d) { return kOperators.find(d) != std::string_view::npos; }), start};
    }
    return {Token::Kind::kWord, Run([](char d) {
              return kSpace.find(d) == std::string_view::npos && kOperators.find(d) == std::string_view::npos &&
                     d != '(' && d != ')' && d != '"';
            }),
            start};
  }

 private:
  static constexpr std::string_view kSpace = " \t\r\n";
  static constexpr std::string_view kOperators = "=!~<>";

  template <class Belongs>
  std::string Run(const Belongs& belongs) {
    const size_t start = at_;
    while (at_ < text_.size() && belongs(text_[at_])) ++at_;
    return std::string(text_.substr(start, at_ - start));
  }

  std::string Quoted() {
    const size_t start = at_++;
    std::string value;
    while (at_ < text_.size() && text_[at_] != '"') {
      if (text_[at_] == '\\' && at_ + 1 < text_.size()) ++at_;
      value.push_back(text_[at_++]);
    }
    if (at_ == text_.size()) Fail("a quote is not closed", start);
    ++at_;
    return value;
  }

  std::string_view text_;
  size_t at_ = 0;
};

class Parser {
 public:
  explicit Parser(std::string_view text) : scanner_(text) { Advance(); }

  RuleTest ParseAll() {
    RuleTest test = Rule();
    if (token_.kind != Token::Kind::kEnd) Fail("'and', 'or' or the end is expected", token_.at);
    return test;
  }

 private:
  void Advance() { token_ = scanner_.Next(); }
  bool Accept(std::string_view word) {
    if (token_.kind != Token::Kind::kWord || token_.text != word) return false;
    Advance();
    return true;
  }

  RuleTest Rule() {
    std::vector<RuleTest> tests = {All()};
    while (Accept("or")) tests.push_back(All());
    if (tests.size() == 1) return tests[0];
    return [tests](const RuleSubject& subject) {
      for (const auto& test : tests) {
        if (test(subject)) return true;
      }
      return false;
    };
  }

  RuleTest All() {
    std::vector<RuleTest> tests = {Condition()};
    while (Accept("and")) tests.push_back(Condition());
    if (tests.size() == 1) return tests[0];
    return [tests](const RuleSubject& subject) {
      for (const auto& test : tests) {
        if (!test(subject)) return false;
      }
      return true;
    };
  }

  RuleTest Condition() {
    if (++depth_ > FontRule::kDeepest) Fail("too many levels", token_.at);
    RuleTest test;
    if (Accept("not")) {
      test = [inner = Condition()](const RuleSubject& subject) { return !inner(subject); };
    } else if (token_.kind == Token::Kind::kOpen) {
      Advance();
      test = Rule();
      if (token_.kind != Token::Kind::kClose) Fail("')' is missing", token_.at);
      Advance();
    } else {
      test = Comparison();
    }
    --depth_;
    return test;
  }

  RuleTest Comparison() {
    if (token_.kind != Token::Kind::kWord) Fail("the name of a field is expected", token_.at);
    const Token field = token_;
    Advance();
    if (auto flag = FlagTest(field.text)) return *flag;
    if (!IsRuleField(field.text)) Fail("there is no field '" + field.text + "'", field.at);
    if (token_.kind != Token::Kind::kOperator) Fail("an operator is expected after '" + field.text + "'", token_.at);
    const Token comparison = token_;
    Advance();
    if (token_.kind != Token::Kind::kWord && token_.kind != Token::Kind::kQuoted)
      Fail("a value is expected", token_.at);
    const Token value = token_;
    Advance();
    std::string problem;
    auto test = FieldTest(field.text, comparison.text, value.text, problem);
    if (!test) Fail(problem, comparison.at);
    return *test;
  }

  Scanner scanner_;
  Token token_;
  int depth_ = 0;
};

}  // namespace

FontRule FontRule::Parse(std::string_view text) {
  if (text.size() > kLongest) throw RuleError("a rule has at most " + std::to_string(kLongest) + " bytes");
  return FontRule(Parser(text).ParseAll());
}

}  // namespace agent
