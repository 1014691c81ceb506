#include "services/zvdlgbase/string_ids.h"
#include "services/zvdlgbase/zvdlgbase.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

namespace {

template <class Record>
Record Tagged() {
  Record record{};
  record.uStructSize = sizeof record;
  return record;
}

std::vector<FORMATINFO> Formats() {
  std::vector<FORMATINFO> formats;
  for (int32_t position = GetFirstFormatPosition(); position >= 0 && formats.size() < 1000;) {
    formats.push_back(Tagged<FORMATINFO>());
    EXPECT_EQ(SUCCESS, GetNextFormat(&formats.back(), &position));
  }
  return formats;
}

std::vector<FORMATBPPINFO> Depths(int32_t format) {
  std::vector<FORMATBPPINFO> depths;
  for (int32_t position = GetFirstFormatBppPosition(format); position >= 0 && depths.size() < 1000;) {
    depths.push_back(Tagged<FORMATBPPINFO>());
    EXPECT_EQ(SUCCESS, GetNextFormatBpp(format, &depths.back(), &position));
  }
  return depths;
}

std::vector<FORMATSUBTYPEINFO> Subtypes(int32_t format, int32_t bits) {
  std::vector<FORMATSUBTYPEINFO> subtypes;
  for (int32_t position = GetFirstFormatSubtypePosition(format, bits); position >= 0 && subtypes.size() < 1000;) {
    subtypes.push_back(Tagged<FORMATSUBTYPEINFO>());
    EXPECT_EQ(SUCCESS, GetNextFormatSubtype(format, bits, &subtypes.back(), &position));
  }
  return subtypes;
}

std::wstring Text(int32_t id) {
  wchar_t text[100];
  return GetDialogStringText(static_cast<uint32_t>(id), text, 100) == SUCCESS ? text : L"";
}

const FORMATINFO* FindByFileFormat(const std::vector<FORMATINFO>& formats, int32_t fileFormat) {
  for (const FORMATINFO& format : formats) {
    if (format.fileFormat == fileFormat) {
      return &format;
    }
  }
  return nullptr;
}

TEST(Catalogue, PositionBeforeAStepIsTheIdOfTheEntry) {
  for (int32_t position = GetFirstFormatPosition(); position >= 0;) {
    const int32_t before = position;
    FORMATINFO info = Tagged<FORMATINFO>();
    ASSERT_EQ(SUCCESS, GetNextFormat(&info, &position));
    EXPECT_EQ(before, info.format);
  }
}

TEST(Catalogue, HasNoMoreEntriesThanAFilterListTakes) {
  // The save dialog's filter block has room for 67 pairs.
  EXPECT_GE(Formats().size(), 8u);
  EXPECT_LE(Formats().size(), 67u);
}

TEST(Catalogue, WalkAndQueryAgree) {
  for (const FORMATINFO& format : Formats()) {
    FORMATINFO queried = Tagged<FORMATINFO>();
    ASSERT_EQ(SUCCESS, GetFormatInfo(format.format, &queried));
    EXPECT_EQ(0, memcmp(&format, &queried, sizeof queried));
    for (const FORMATBPPINFO& depth : Depths(format.format)) {
      FORMATBPPINFO queriedDepth = Tagged<FORMATBPPINFO>();
      ASSERT_EQ(SUCCESS, GetFormatBppInfo(format.format, depth.bitsPerPixel, &queriedDepth));
      EXPECT_EQ(0, memcmp(&depth, &queriedDepth, sizeof queriedDepth));
      for (const FORMATSUBTYPEINFO& subtype : Subtypes(format.format, depth.bitsPerPixel)) {
        FORMATSUBTYPEINFO queriedSubtype = Tagged<FORMATSUBTYPEINFO>();
        ASSERT_EQ(SUCCESS, GetFormatSubtypeInfo(format.format, depth.bitsPerPixel, subtype.subtype, &queriedSubtype));
        EXPECT_EQ(0, memcmp(&subtype, &queriedSubtype, sizeof queriedSubtype));
      }
    }
  }
}

TEST(Catalogue, CountsAndDefaultDepthFitTheLists) {
  for (const FORMATINFO& format : Formats()) {
    SCOPED_TRACE(Text(format.nameStringId).c_str());
    const std::vector<FORMATBPPINFO> depths = Depths(format.format);
    EXPECT_EQ(format.bppCount, static_cast<int32_t>(depths.size()));
    FORMATBPPINFO defaultDepth = Tagged<FORMATBPPINFO>();
    EXPECT_EQ(SUCCESS, GetFormatBppInfo(format.format, format.defaultBitsPerPixel, &defaultDepth));
    std::set<int32_t> distinct;
    for (const FORMATBPPINFO& depth : depths) {
      EXPECT_TRUE(distinct.insert(depth.bitsPerPixel).second) << depth.bitsPerPixel << " twice";
      EXPECT_EQ(depth.subtypeCount, static_cast<int32_t>(Subtypes(format.format, depth.bitsPerPixel).size()));
    }
  }
}

TEST(Catalogue, EveryEntryHasNameAndExtension) {
  for (const FORMATINFO& format : Formats()) {
    SCOPED_TRACE(format.format);
    EXPECT_FALSE(Text(format.nameStringId).empty());
    for (const FORMATBPPINFO& depth : Depths(format.format)) {
      SCOPED_TRACE(depth.bitsPerPixel);
      if (depth.subtypeCount == 0) {
        EXPECT_FALSE(Text(depth.extensionStringId).empty());
      } else {
        EXPECT_LT(depth.extensionStringId, 0) << "the extension is the sub type's";
      }
      for (const FORMATSUBTYPEINFO& subtype : Subtypes(format.format, depth.bitsPerPixel)) {
        EXPECT_FALSE(Text(subtype.nameStringId).empty());
        EXPECT_FALSE(Text(subtype.extensionStringId).empty());
      }
    }
  }
}

TEST(Catalogue, AListedFormatCanBeWrittenInAllItsSubtypes) {
  int listed = 0;
  for (const FORMATINFO& format : Formats()) {
    const int32_t excluded = IsFormatExcludedFromList(format.fileFormat);
    listed += excluded ? 0 : 1;
    for (const FORMATBPPINFO& depth : Depths(format.format)) {
      for (const FORMATSUBTYPEINFO& subtype : Subtypes(format.format, depth.bitsPerPixel)) {
        EXPECT_EQ(excluded, IsFormatExcludedFromList(subtype.fileFormat)) << Text(subtype.nameStringId).c_str();
      }
    }
  }
  EXPECT_GE(listed, 10);
}

TEST(Catalogue, SubtypeIdsAreTheSingleBitsFromOneOn) {
  for (const FORMATINFO& format : Formats()) {
    for (const FORMATBPPINFO& depth : Depths(format.format)) {
      uint32_t expected = 1;
      for (const FORMATSUBTYPEINFO& subtype : Subtypes(format.format, depth.bitsPerPixel)) {
        EXPECT_EQ(expected, static_cast<uint32_t>(subtype.subtype));
        expected <<= 1;
      }
    }
  }
}

TEST(Catalogue, AFormatHasSubtypesAtAllItsDepthsOrAtNone) {
  // The dialogs take file format and extension from the sub type and do not look back when a depth has none.
  for (const FORMATINFO& format : Formats()) {
    const std::vector<FORMATBPPINFO> depths = Depths(format.format);
    for (const FORMATBPPINFO& depth : depths) {
      EXPECT_EQ(depths.front().subtypeCount == 0, depth.subtypeCount == 0) << Text(format.nameStringId).c_str();
    }
  }
}

TEST(Catalogue, OptionFlagsGoWithWhatTheFileFormatHas) {
  for (const FORMATINFO& format : Formats()) {
    if (IsFormatExcludedFromList(format.fileFormat)) {
      continue;
    }
    for (const FORMATBPPINFO& depth : Depths(format.format)) {
      std::vector<std::pair<int32_t, uint32_t>> entries;
      for (const FORMATSUBTYPEINFO& subtype : Subtypes(format.format, depth.bitsPerPixel)) {
        entries.emplace_back(subtype.fileFormat, subtype.optionFlags);
      }
      if (entries.empty()) {
        entries.emplace_back(format.fileFormat, depth.optionFlags);
      } else {
        EXPECT_EQ(entries.front().second, depth.optionFlags) << "a depth has the flags of its first sub type";
      }
      for (const auto& [fileFormat, flags] : entries) {
        SCOPED_TRACE(fileFormat);
        int32_t quality = 0;
        uint32_t pages = 0;
        FORMATSTAMPLIMITS limits = Tagged<FORMATSTAMPLIMITS>();
        const bool hasQuality = (flags & SAVEOPT_QFACTOR) && !(flags & SAVEOPT_QFACTOR_ZERO);
        EXPECT_EQ(hasQuality, GetFormatDefaultQFactor(fileFormat, &quality) == SUCCESS);
        EXPECT_EQ((flags & SAVEOPT_MULTIPAGE) != 0, GetFormatMultipageOps(fileFormat, &pages) == SUCCESS);
        EXPECT_EQ((flags & SAVEOPT_STAMP) != 0, GetFormatStampLimits(fileFormat, &limits) == SUCCESS);
      }
    }
  }
}

TEST(Catalogue, SubtypeOneOfGifIsTheInterlacedOne) {
  const std::vector<FORMATINFO> formats = Formats();
  const FORMATINFO* gif = FindByFileFormat(formats, 2);
  ASSERT_NE(nullptr, gif);
  FORMATSUBTYPEINFO subtype = Tagged<FORMATSUBTYPEINFO>();
  ASSERT_EQ(SUCCESS, GetFormatSubtypeInfo(gif->format, 8, 1, &subtype));
  EXPECT_EQ(L"Interlaced", Text(subtype.nameStringId));
}

TEST(Catalogue, CmpHasItsOwnExtension) {
  const std::vector<FORMATINFO> formats = Formats();
  const FORMATINFO* cmp = FindByFileFormat(formats, 5);
  ASSERT_NE(nullptr, cmp);
  FORMATBPPINFO depth = Tagged<FORMATBPPINFO>();
  ASSERT_EQ(SUCCESS, GetFormatBppInfo(cmp->format, cmp->defaultBitsPerPixel, &depth));
  EXPECT_EQ(L"cmp", Text(depth.extensionStringId));
}

TEST(Catalogue, WhatItDoesNotHoldIsRefused) {
  FORMATINFO format = Tagged<FORMATINFO>();
  FORMATBPPINFO depth = Tagged<FORMATBPPINFO>();
  FORMATSUBTYPEINFO subtype = Tagged<FORMATSUBTYPEINFO>();
  for (const int32_t unknown : {-1, 67, 100000}) {
    EXPECT_EQ(ERROR_BAD_ARGUMENT, GetFormatInfo(unknown, &format));
    EXPECT_EQ(ERROR_BAD_ARGUMENT, GetFormatBppInfo(unknown, 24, &depth));
    EXPECT_LT(GetFirstFormatBppPosition(unknown), 0);
  }
  EXPECT_EQ(ERROR_BAD_ARGUMENT, GetFormatBppInfo(0, 13, &depth));
  EXPECT_LT(GetFirstFormatSubtypePosition(0, 13), 0);
  for (const int32_t unknown : {0, 3, -1, INT32_MIN, 1 << 30}) {
    EXPECT_EQ(ERROR_BAD_ARGUMENT, GetFormatSubtypeInfo(0, 24, unknown, &subtype)) << unknown;
  }
}

TEST(Catalogue, AFinishedWalkGoesNoFurther) {
  FORMATINFO format = Tagged<FORMATINFO>();
  int32_t position = -1;
  EXPECT_EQ(ERROR_BAD_ARGUMENT, GetNextFormat(&format, &position));
  EXPECT_EQ(ERROR_BAD_ARGUMENT, GetNextFormat(&format, nullptr));
  FORMATBPPINFO depth = Tagged<FORMATBPPINFO>();
  position = 1000;
  EXPECT_EQ(ERROR_BAD_ARGUMENT, GetNextFormatBpp(0, &depth, &position));
}

TEST(Catalogue, RecordsNeedTheirSizeTag) {
  FORMATINFO format{};
  FORMATBPPINFO depth{};
  FORMATSUBTYPEINFO subtype{};
  int32_t position = 0;
  EXPECT_EQ(ERROR_BAD_RECORD_SIZE, GetFormatInfo(0, &format));
  EXPECT_EQ(ERROR_BAD_RECORD_SIZE, GetFormatBppInfo(0, 24, &depth));
  EXPECT_EQ(ERROR_BAD_RECORD_SIZE, GetFormatSubtypeInfo(0, 24, 1, &subtype));
  EXPECT_EQ(ERROR_BAD_RECORD_SIZE, GetNextFormat(&format, &position));
  EXPECT_EQ(0, position) << "a refused step does not move";
  EXPECT_EQ(ERROR_BAD_ARGUMENT, GetFormatInfo(0, nullptr));
}

}  // namespace
