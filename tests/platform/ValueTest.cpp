// Property-list values: shared handles, order, and containers of any size and depth.
#include "platform/Value.h"

#include <gtest/gtest.h>

#include <array>
#include <thread>
#include <vector>

namespace platform {
namespace {

TEST(Values, CopiesOfAHandleShareTheValue) {
  Dictionary dictionary = Dictionary::Create();
  const Dictionary same = dictionary;
  const Dictionary copy = dictionary.Copy();
  dictionary.Set("key", "text");
  EXPECT_EQ(same.GetString("key").View(), "text");
  EXPECT_FALSE(copy.Contains("key"));
  EXPECT_TRUE(same == dictionary);
  EXPECT_FALSE(copy == dictionary);

  const ValueRef owned = Value(same).Release();
  EXPECT_TRUE(Value::Retain(owned) == dictionary);
  EXPECT_TRUE(Value::Adopt(owned) == dictionary);
}

TEST(Values, AHandleOfAnotherTypeIsNull) {
  const Value values[] = {String::FromUTF8("1"), Number::FromInteger(1), Number::FromReal(1.5), Boolean::From(true),
                          Data::From({}),        Array::Create(),        Dictionary::Create(),  Value()};
  std::vector<int> counts(6);
  for (const Value& value : values) {
    const bool isOfType[] = {static_cast<bool>(String(value)),  static_cast<bool>(Number(value)),
                             static_cast<bool>(Boolean(value)), static_cast<bool>(Data(value)),
                             static_cast<bool>(Array(value)),   static_cast<bool>(Dictionary(value))};
    for (size_t i = 0; i < counts.size(); ++i) counts[i] += isOfType[i];
  }
  EXPECT_EQ(counts, (std::vector<int>{1, 2, 1, 1, 1, 1}));
  EXPECT_FALSE(String::FromUTF8("a\xFF"));
  EXPECT_EQ(String().CString()[0], '\0');
  EXPECT_EQ(String::FromUTF8("a𝄞é").Length(), 4u);
  for (const auto& [real, integer] : {std::pair(-1.9, INT64_C(-1)), std::pair(1e300, INT64_MAX),
                                      std::pair(-1e300, INT64_MIN), std::pair(0.0 / 0.0, INT64_C(0))}) {
    EXPECT_EQ(Number::FromReal(real).Integer(), integer) << real;
  }
}

// The lookup method changes with the number of keys, its results do not.
TEST(Values, DictionariesKeepTheirOrderAtEverySize) {
  for (const int count : {3, 39, 40, 41, 200}) {
    Dictionary dictionary = Dictionary::Create();
    std::vector<std::string> expected;
    for (int i = 0; i < count; ++i) {
      expected.push_back("key" + std::to_string((i * 7919) % count));
      dictionary.Set(expected.back(), Number::FromInteger(i));
    }
    ASSERT_EQ(dictionary.Keys(), expected);
    dictionary.Set(expected[1], Number::FromInteger(-1));
    EXPECT_EQ(dictionary.Keys(), expected) << "a key that is set again keeps its place";
    EXPECT_TRUE(dictionary.Remove(expected[0]));
    EXPECT_FALSE(dictionary.Remove(expected[0]));
    dictionary.Set(expected[2], Value());  // removes as well
    expected.erase(expected.begin() + 2);
    expected.erase(expected.begin());
    EXPECT_EQ(dictionary.Keys(), expected);
    for (size_t i = 0; i < expected.size(); ++i) {
      EXPECT_TRUE(dictionary.Get(expected[i]) == dictionary.ValueAt(i)) << expected[i];
    }
    EXPECT_EQ(dictionary.GetInteger(expected[0]), -1);
    EXPECT_FALSE(dictionary.Get("key" + std::to_string(count)));
  }
}

TEST(Values, EqualityLooksAtTheContents) {
  const auto make = [](bool reversed, int64_t number) {
    Dictionary dictionary = Dictionary::Create();
    Array array = Array::Create();
    array.Append(Value());
    array.Append(Number::FromInteger(number));
    const std::pair<const char*, Value> entries[] = {{"a", array}, {"b", String::FromUTF8("text")}};
    for (int i = 0; i < 2; ++i)
      dictionary.Set(entries[reversed ? 1 - i : i].first, entries[reversed ? 1 - i : i].second);
    return dictionary;
  };
  EXPECT_TRUE(make(false, 1).Equals(make(true, 1)));
  EXPECT_FALSE(make(false, 1).Equals(make(false, 2)));
  EXPECT_FALSE(Number::FromInteger(1).Equals(Boolean::From(true)));
  EXPECT_FALSE(Number::FromInteger(1).Equals(Number::FromReal(1)));
  EXPECT_TRUE(Value().Equals(Value()));
  EXPECT_FALSE(Value().Equals(Array::Create()));
}

TEST(Values, ArraysTakeNullsAndIgnoreWhatIsBeyondTheEnd) {
  Array array = Array::Create();
  array.Append(Value());
  array.Insert(0, Boolean::From(true));
  array.Insert(5, Boolean::From(false));
  array.Set(7, Boolean::From(false));
  array.RemoveAt(9);
  ASSERT_EQ(array.Count(), 2u);
  EXPECT_TRUE(Boolean(array.At(0)).IsTrue());
  EXPECT_FALSE(array.At(1));
  EXPECT_FALSE(array.At(2));
  array.RemoveAt(0);
  EXPECT_EQ(array.Count(), 1u);
  array.Clear();
  EXPECT_EQ(array.Count(), 0u);
}

TEST(Values, DeepOnesGoAwayWithoutRecursion) {
  Value value;
  for (int i = 0; i < 100000; ++i) {
    Array array = Array::Create();
    array.Append(value);
    Dictionary around = Dictionary::Create();
    around.Set("inside", array);
    value = around;
  }
  EXPECT_FALSE(value.Equals(Value()));
  value = Value();
}

TEST(Values, ReferencesAreCountedAcrossThreads) {
  const String text = String::FromUTF8("shared");
  std::array<std::thread, 4> threads;
  for (std::thread& thread : threads) {
    thread = std::thread([text] {
      for (int i = 0; i < 20000; ++i) {
        Value copy(text);
        EXPECT_TRUE(copy);
        copy = Value();
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(text.View(), "shared");
}

}  // namespace
}  // namespace platform
