#include "platform/collections.h"

#include <gtest/gtest.h>

#include <set>

#include "tests/unit/platform/print_cstring.h"

namespace {

struct FoldedKey {
  CString text;
};

int hashCalls = 0;

}  // namespace

template <>
UINT HashKey<const FoldedKey&>(const FoldedKey& key) {
  ++hashCalls;
  return static_cast<UINT>(key.text.GetLength()) >> 4;
}

template <>
BOOL CompareElements<FoldedKey, FoldedKey>(const FoldedKey* first, const FoldedKey* second) {
  return first->text.CompareNoCase(second->text) == 0;
}

namespace {

TEST(CArray, GrowsAndShrinks) {
  CArray<int, int> numbers;
  EXPECT_EQ(numbers.GetUpperBound(), -1);
  EXPECT_EQ(numbers.Add(5), 0);
  EXPECT_EQ(numbers.Add(6), 1);
  numbers.InsertAt(0, 4);
  numbers.SetAtGrow(5, 9);
  ASSERT_EQ(numbers.GetSize(), 6);
  EXPECT_EQ(numbers[0], 4);
  EXPECT_EQ(numbers[4], 0);
  EXPECT_EQ(numbers[5], 9);
  numbers.RemoveAt(1, 4);
  ASSERT_EQ(numbers.GetCount(), 2);
  EXPECT_EQ(numbers[1], 9);
  numbers.RemoveAll();
  EXPECT_TRUE(numbers.IsEmpty());
}

TEST(CArray, InsertsPastTheEndWithAGap) {
  CArray<int, int> numbers;
  numbers.InsertAt(2, 7, 2);
  ASSERT_EQ(numbers.GetSize(), 4);
  EXPECT_EQ(numbers[0], 0);
  EXPECT_EQ(numbers[3], 7);
}

TEST(CArray, TakesAnElementOfItselfAsArgument) {
  CArray<CString> texts;
  texts.Add(L"a text that is too long to be stored within the string object itself");
  texts.InsertAt(0, texts[0], 3);
  texts.SetAtGrow(20, texts[0]);
  EXPECT_EQ(texts[20], texts[3]);
}

TEST(CArray, AppendsAnotherAndItself) {
  CArray<int, int> numbers;
  numbers.Add(1);
  numbers.Add(2);
  EXPECT_EQ(numbers.Append(numbers), 2);
  ASSERT_EQ(numbers.GetSize(), 4);
  EXPECT_EQ(numbers[3], 2);
  CArray<int, int> copy;
  copy.Copy(numbers);
  EXPECT_EQ(copy.GetSize(), 4);
}

TEST(CStringArray, TakesLiterals) {
  CStringArray texts;
  texts.Add(L"x");
  EXPECT_EQ(texts[0], L"x");
}

TEST(CMap, StartsWithSeventeenBucketsAndKeepsWhatItIsTold) {
  CMap<int, int, CString, LPCWSTR> map;
  EXPECT_EQ(map.GetHashTableSize(), 17u);
  map.InitHashTable(257);
  EXPECT_EQ(map.GetHashTableSize(), 257u);
  map.SetAt(1, L"one");
  map.RemoveAll();
  EXPECT_EQ(map.GetHashTableSize(), 257u);
}

TEST(CMap, LooksUpOverwritesAndRemoves) {
  CMap<int, int, CString, LPCWSTR> map;
  map.SetAt(1, L"one");
  map.SetAt(1, L"uno");
  map[2] = L"two";
  CString value(L"before");
  EXPECT_FALSE(map.Lookup(3, value));
  EXPECT_EQ(value, L"before");
  EXPECT_TRUE(map.Lookup(1, value));
  EXPECT_EQ(value, L"uno");
  EXPECT_EQ(map.GetCount(), 2);
  EXPECT_TRUE(map.RemoveKey(1));
  EXPECT_FALSE(map.RemoveKey(1));
}

TEST(CMap, UsesTheHooksOfItsKeyType) {
  CMap<FoldedKey, const FoldedKey&, int, int> map;
  hashCalls = 0;
  map.SetAt(FoldedKey{L"<NUM>"}, 4);
  EXPECT_GT(hashCalls, 0);
  int id = 0;
  EXPECT_TRUE(map.Lookup(FoldedKey{L"<num>"}, id));
  EXPECT_EQ(id, 4);
  EXPECT_FALSE(map.Lookup(FoldedKey{L"<numb>"}, id));
}

TEST(CMap, HashesNumbersWithoutTheirLowestFourBits) {
  EXPECT_EQ(HashKey<int>(15), 0u);
  EXPECT_EQ(HashKey<int>(16), 1u);
}

TEST(CMap, FindsTextsByLiteralAndByString) {
  CMap<CString, LPCWSTR, int, int> map;
  map.SetAt(L"a", 1);
  int value = 0;
  EXPECT_TRUE(map.Lookup(CString(L"a"), value));
  EXPECT_EQ(value, 1);
}

TEST(CMap, WalksOverEveryEntryOnce) {
  CMap<int, int, int, int> map;
  for (int key = 0; key < 100; ++key) {
    map.SetAt(key, key * 2);
  }
  std::set<int> seen;
  for (POSITION position = map.GetStartPosition(); position;) {
    int key = 0;
    int value = 0;
    map.GetNextAssoc(position, key, value);
    EXPECT_EQ(value, key * 2);
    EXPECT_TRUE(seen.insert(key).second);
  }
  EXPECT_EQ(seen.size(), 100u);
  map.RemoveAll();
  EXPECT_EQ(map.GetStartPosition(), nullptr);
}

TEST(CList, AddsWalksAndRemoves) {
  CList<int, int> list;
  list.AddTail(2);
  list.AddTail(3);
  POSITION one = list.AddHead(1);
  list.InsertAfter(one, 10);
  std::vector<int> forward;
  for (POSITION position = list.GetHeadPosition(); position;) {
    forward.push_back(list.GetNext(position));
  }
  EXPECT_EQ(forward, (std::vector<int>{1, 10, 2, 3}));
  list.RemoveAt(list.Find(10));
  EXPECT_EQ(list.Find(10), nullptr);
  POSITION tail = list.GetTailPosition();
  EXPECT_EQ(list.GetPrev(tail), 3);
  EXPECT_EQ(list.GetAt(tail), 2);
  EXPECT_EQ(list.RemoveHead(), 1);
  EXPECT_EQ(list.RemoveTail(), 3);
  EXPECT_EQ(list.GetCount(), 1);
}

}  // namespace
