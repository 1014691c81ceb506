// The record, ICC files, and what is accepted as a profile.
#include "tests/unit/zvcolor/color_test.h"

namespace {

using namespace zvtest;

constexpr size_t kSizeAt = 0, kVersionAt = 8, kClassAt = 12, kSpaceAt = 16, kSignatureAt = 36, kChecksumAt = 84;
constexpr size_t kCountAt = 128, kFirstTagAt = 132;

class IccFile : public ColorTest {};

TEST_F(IccFile, InitMakesAnEmptyRecordOfTheRightSizeOnly) {
  ICCPROFILEDATA record;
  std::memset(&record, 0xAB, sizeof(record));
  EXPECT_EQ(ERROR_BAD_RECORD_SIZE, Z_InitICCProfile(&record, 55));
  EXPECT_EQ(SUCCESS, Z_InitICCProfile(&record, 56));
  EXPECT_EQ(56u, record.uStructSize);
  EXPECT_EQ(0u, record.dataSize);
  EXPECT_EQ(nullptr, record.data);
  EXPECT_EQ(nullptr, record.tags);
  EXPECT_EQ(ERROR_BAD_ARGUMENT, Z_InitICCProfile(nullptr, 56));
}

TEST_F(IccFile, FreeEmptiesTheRecordAndMayBeRepeated) {
  ASSERT_EQ(SUCCESS, LoadIcc(RgbProfile()));
  EXPECT_EQ(SUCCESS, Z_FreeICCProfile(&profile));
  EXPECT_TRUE(IsEmpty());
  EXPECT_EQ(SUCCESS, Z_FreeICCProfile(&profile));
  EXPECT_EQ(SUCCESS, Z_FreeICCProfile(nullptr));
  ICCPROFILEDATA zeros = {};
  EXPECT_EQ(SUCCESS, Z_FreeICCProfile(&zeros));
}

TEST_F(IccFile, OfVersion4IsLoadedByteForByte) {
  const FileBytes bytes = RgbProfile({4.3});
  ASSERT_EQ(SUCCESS, LoadIcc(bytes));
  EXPECT_EQ(bytes, Loaded());
  EXPECT_EQ(4u, profile.version >> 24);
  EXPECT_EQ(0x6D6E7472u, profile.deviceClass);
  EXPECT_EQ(0x52474220u, profile.colorSpace);
  EXPECT_EQ(0x58595A20u, profile.connectionSpace);
  EXPECT_GT(profile.tagCount, 5u);
  for (uint32_t i = 0; i < profile.tagCount; ++i) {
    EXPECT_LE(profile.tags[i].offset + profile.tags[i].size, profile.dataSize);
  }
}

TEST_F(IccFile, OfVersion2IsLoadedByteForByte) {
  const FileBytes bytes = RgbProfile({2.1});
  ASSERT_EQ(SUCCESS, LoadIcc(bytes));
  EXPECT_EQ(bytes, Loaded());
  EXPECT_EQ(2u, profile.version >> 24);
}

TEST_F(IccFile, OfGreyAndLabIsLoadedToo) {
  EXPECT_EQ(SUCCESS, LoadIcc(GrayProfile()));
  EXPECT_EQ(0x47524159u, profile.colorSpace);
  EXPECT_EQ(SUCCESS, LoadIcc(LabProfile()));
  EXPECT_EQ(0x4C616220u, profile.colorSpace);
}

TEST_F(IccFile, OfAnotherVersionIsRefused) {
  for (const uint32_t major : {1u, 3u, 5u, 0u}) {
    FileBytes bytes = RgbProfile();
    PutNumber(bytes, kVersionAt, major << 24);
    EXPECT_EQ(ERROR_PROFILE_VERSION, LoadIcc(bytes)) << major;
    EXPECT_TRUE(IsEmpty());
  }
}

TEST_F(IccFile, ThatIsNotThereCannotBeOpened) {
  EXPECT_EQ(ERROR_FILE_OPEN, LoadIcc(folder.File(L"missing.icc")));
  EXPECT_EQ(ERROR_FILE_OPEN, LoadIcc(folder.path())) << "a folder";
  EXPECT_EQ(ERROR_FILE_OPEN, LoadIcc(std::wstring())) << "an empty path";
  EXPECT_EQ(ERROR_BAD_ARGUMENT, Z_FillICCProfileFromICCFile(nullptr, &profile));
  EXPECT_EQ(ERROR_BAD_ARGUMENT, Z_FillICCProfileFromICCFile(L"a.icc", nullptr));
}

TEST_F(IccFile, OfAnotherKindIsOfUnknownFormat) {
  EXPECT_EQ(ERROR_FILE_FORMAT, LoadIcc(FileBytes()));
  EXPECT_EQ(ERROR_FILE_FORMAT, LoadIcc(FileBytes(200, 'x')));
  EXPECT_EQ(ERROR_FILE_FORMAT, LoadIcc(Picture(L"a.jpg", {40, 20, FMT_JPEG})));
}

TEST_F(IccFile, ThatIsTooLargeIsRefusedUnread) {
  const std::wstring path = folder.AddFile(L"huge.icc", RgbProfile());
  const HANDLE file = ::CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  ::SetFilePointer(file, static_cast<LONG>(ICC_PROFILE_MAX_BYTES + 1), nullptr, FILE_BEGIN);
  ::SetEndOfFile(file);
  ::CloseHandle(file);
  EXPECT_EQ(ERROR_LIMIT_EXCEEDED, LoadIcc(path));
  EXPECT_TRUE(IsEmpty());
}

struct Damage {
  const char* name;
  void (*apply)(FileBytes&);
};
class DamagedIccFile : public ColorTest, public testing::WithParamInterface<Damage> {};

TEST_P(DamagedIccFile, IsRefusedAndLeavesTheRecordClean) {
  FileBytes bytes = RgbProfile({4.3, 0, true});
  ASSERT_EQ(SUCCESS, LoadIcc(bytes)) << "whole, it is fine";
  GetParam().apply(bytes);
  EXPECT_EQ(ERROR_PROFILE_DAMAGED, LoadIcc(bytes));
  EXPECT_TRUE(IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Profiles, DamagedIccFile,
    testing::Values(Damage{"HeaderAlone", [](FileBytes& bytes) { bytes.resize(128); }},
                    Damage{"TruncatedTagTable", [](FileBytes& bytes) { bytes.resize(kFirstTagAt + 18); }},
                    Damage{"TruncatedTagTableWithItsSize",
                           [](FileBytes& bytes) {
                             bytes.resize(kFirstTagAt + 18);
                             PutNumber(bytes, kSizeAt, static_cast<uint32_t>(bytes.size()));
                           }},
                    Damage{"LastByteGone", [](FileBytes& bytes) { bytes.pop_back(); }},
                    Damage{"BytesBehindTheEnd", [](FileBytes& bytes) { bytes.insert(bytes.end(), 4, 0); }},
                    Damage{"RubbishBehindTheEnd", [](FileBytes& bytes) { bytes.push_back(1); }},
                    Damage{"SizeTooSmall", [](FileBytes& bytes) { PutNumber(bytes, kSizeAt, 130); }},
                    Damage{"SizeOfZero", [](FileBytes& bytes) { PutNumber(bytes, kSizeAt, 0); }},
                    Damage{"SizeOfFourGigabytes", [](FileBytes& bytes) { PutNumber(bytes, kSizeAt, 0xFFFFFFFF); }},
                    Damage{"FourBillionTags", [](FileBytes& bytes) { PutNumber(bytes, kCountAt, 0xFFFFFFFF); }},
                    Damage{"TagBehindTheEnd", [](FileBytes& bytes) { PutNumber(bytes, kFirstTagAt + 4, 0x7FFFFFFF); }},
                    Damage{"TagAcrossTheEnd", [](FileBytes& bytes) { PutNumber(bytes, kFirstTagAt + 8, 0xFFFFFFF0); }},
                    Damage{"TagInTheHeader", [](FileBytes& bytes) { PutNumber(bytes, kFirstTagAt + 4, 0); }},
                    Damage{"TagOfNoSize", [](FileBytes& bytes) { PutNumber(bytes, kFirstTagAt + 8, 0); }},
                    Damage{"UnknownClass", [](FileBytes& bytes) { PutNumber(bytes, kClassAt, 0x61626364); }},
                    Damage{"UnknownColors", [](FileBytes& bytes) { PutNumber(bytes, kSpaceAt, 0x61626364); }},
                    Damage{"WrongChecksum", [](FileBytes& bytes) { bytes[kChecksumAt] ^= 1; }},
                    Damage{"ChangedContent", [](FileBytes& bytes) { bytes.back() ^= 1; }}),
    [](const auto& test) { return test.param.name; });

TEST_F(IccFile, WithoutTheTagsThatItsColorsNeedIsDamaged) {
  FileBytes bytes = RgbProfile();
  const uint32_t redCurve = 0x72545243;
  for (size_t at = kFirstTagAt; at + 12 <= bytes.size(); at += 12) {
    if (bytes[at] == 'r' && bytes[at + 1] == 'T') {
      PutNumber(bytes, at, redCurve + 0x11);
      break;
    }
  }
  EXPECT_EQ(ERROR_PROFILE_DAMAGED, LoadIcc(bytes));
}

TEST_F(IccFile, WithACurveOfNoKnownTypeIsDamaged) {
  FileBytes bytes = RgbProfile();
  for (size_t at = kFirstTagAt; at + 12 <= bytes.size(); at += 12) {
    if (bytes[at] == 'r' && bytes[at + 1] == 'T') {
      const size_t tag = static_cast<size_t>(bytes[at + 6]) << 8 | bytes[at + 7];
      PutNumber(bytes, tag, 0x61626364);
      break;
    }
  }
  EXPECT_EQ(ERROR_PROFILE_DAMAGED, LoadIcc(bytes));
}

TEST_F(IccFile, OfVersion2HasNoChecksumWhateverStandsInItsPlace) {
  FileBytes bytes = RgbProfile({2.1});
  bytes[kChecksumAt] = 0x55;
  EXPECT_EQ(SUCCESS, LoadIcc(bytes));
}

TEST_F(IccFile, OfNamedColorsNeedsNothingButTheirList) {
  cmsHPROFILE named = cmsCreateProfilePlaceholder(nullptr);
  cmsSetDeviceClass(named, cmsSigNamedColorClass);
  cmsSetColorSpace(named, cmsSigLabData);
  cmsSetPCS(named, cmsSigLabData);
  cmsNAMEDCOLORLIST* list = cmsAllocNamedColorList(nullptr, 1, 3, "", "");
  cmsUInt16Number place[3] = {0x8000, 0x8000, 0x8000};
  cmsUInt16Number colorants[cmsMAXCHANNELS] = {};
  cmsAppendNamedColor(list, "White", place, colorants);
  cmsWriteTag(named, cmsSigNamedColor2Tag, list);
  cmsFreeNamedColorList(list);
  const FileBytes bytes = FinishProfile(named, {4.3});
  ASSERT_EQ(SUCCESS, LoadIcc(bytes));
  EXPECT_EQ(ERROR_FEATURE_UNSUPPORTED, SaveImage(Picture(L"a.png", {40, 20, FMT_PNG}), bytes))
      << "no image has such colours";
}

TEST_F(IccFile, PaddedToAMultipleOfFourLosesThePadding) {
  FileBytes bytes = RgbProfile();
  const FileBytes whole = bytes;
  bytes.insert(bytes.end(), 3, 0);
  EXPECT_EQ(SUCCESS, LoadIcc(bytes));
  EXPECT_EQ(whole, Loaded());
}

TEST_F(IccFile, IsGeneratedByteForByte) {
  const FileBytes bytes = RgbProfile({2.1, 1000});
  ASSERT_EQ(SUCCESS, LoadIcc(bytes));
  const std::wstring path = folder.AddFile(L"out.icc", {1, 2, 3});
  EXPECT_EQ(SUCCESS, Z_GenerateICCFile(&profile, path.c_str()));
  EXPECT_EQ(bytes, ReadWholeFile(path));
  EXPECT_EQ(2, CountFiles()) << "given.icc and out.icc, and nothing beside them";
}

TEST_F(IccFile, IsNotGeneratedFromAnEmptyRecord) {
  const std::wstring path = folder.AddFile(L"out.icc", {1, 2, 3});
  EXPECT_EQ(ERROR_PROFILE_EMPTY, Z_GenerateICCFile(&profile, path.c_str()));
  EXPECT_EQ(ERROR_BAD_ARGUMENT, Z_GenerateICCFile(nullptr, path.c_str()));
  EXPECT_EQ(ERROR_BAD_ARGUMENT, Z_GenerateICCFile(&profile, nullptr));
  EXPECT_EQ((FileBytes{1, 2, 3}), ReadWholeFile(path));
}

TEST_F(IccFile, IsNotGeneratedFromADamagedRecord) {
  ASSERT_EQ(SUCCESS, LoadIcc(RgbProfile()));
  static_cast<uint8_t*>(profile.data)[kSignatureAt] = 0;
  const std::wstring path = folder.AddFile(L"out.icc", {1, 2, 3});
  EXPECT_EQ(ERROR_PROFILE_DAMAGED, Z_GenerateICCFile(&profile, path.c_str()));
  EXPECT_EQ((FileBytes{1, 2, 3}), ReadWholeFile(path));
}

TEST_F(IccFile, IsNotGeneratedWhereNothingCanBeWritten) {
  ASSERT_EQ(SUCCESS, LoadIcc(RgbProfile()));
  EXPECT_EQ(ERROR_FILE_OPEN, Z_GenerateICCFile(&profile, L""));
  EXPECT_EQ(ERROR_FILE_OPEN, Z_GenerateICCFile(&profile, folder.path().c_str()));
  EXPECT_EQ(ERROR_FILE_OPEN, Z_GenerateICCFile(&profile, folder.File(L"no such folder\\a.icc").c_str()));
  const std::wstring locked = folder.AddFile(L"locked.icc", {1, 2, 3});
  ::SetFileAttributesW(locked.c_str(), FILE_ATTRIBUTE_READONLY);
  EXPECT_EQ(ERROR_FILE_OPEN, Z_GenerateICCFile(&profile, locked.c_str()));
  ::SetFileAttributesW(locked.c_str(), FILE_ATTRIBUTE_NORMAL);
  EXPECT_EQ((FileBytes{1, 2, 3}), ReadWholeFile(locked));
}

TEST_F(IccFile, LeavesNoMemoryBehind) {
  const int64_t before = CoreBlockCount();
  for (int i = 0; i < 50; ++i) {
    LoadIcc(RgbProfile());
    LoadIcc(FileBytes(300, 0));
  }
  Z_FreeICCProfile(&profile);
  EXPECT_EQ(before, CoreBlockCount());
}

}  // namespace
