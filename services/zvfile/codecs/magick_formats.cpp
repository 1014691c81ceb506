#include "services/zvfile/codecs/magick_formats.h"

#include <algorithm>
#include <string_view>

#include "services/zvfile/file_formats.h"

namespace zvfile::magick {
namespace {

using Head = std::span<const uint8_t>;

bool HasAt(Head head, size_t offset, std::string_view mark) {
  return offset + mark.size() <= head.size() &&
         std::equal(mark.begin(), mark.end(), head.begin() + static_cast<ptrdiff_t>(offset),
                    [](char a, uint8_t b) { return static_cast<uint8_t>(a) == b; });
}

bool Contains(Head head, std::string_view text) {
  const std::string_view all(reinterpret_cast<const char*>(head.data()), std::min<size_t>(head.size(), 1024));
  return all.find(text) != std::string_view::npos;
}

using namespace std::string_view_literals;

// Version, run-length flag and depth must all be among those that exist, since a single byte is the whole mark.
bool IsPcx(Head head) {
  if (head.size() < 128 || head[0] != 10 || head[1] > 5 || head[1] == 1 || head[2] > 1) return false;
  return head[3] == 1 || head[3] == 2 || head[3] == 4 || head[3] == 8;
}
bool IsDcx(Head head) { return HasAt(head, 0, "\xB1\x68\xDE\x3A"sv); }

// "P" and a digit, then white space or a comment.
bool IsNetpbm(Head head, char ascii, char raw) {
  if (head.size() < 4 || head[0] != 'P' || (head[1] != ascii && head[1] != raw)) return false;
  return head[2] == ' ' || head[2] == '\t' || head[2] == '\n' || head[2] == '\r' || head[2] == '#';
}
bool IsPbm(Head head) { return IsNetpbm(head, '1', '4'); }
bool IsPgm(Head head) { return IsNetpbm(head, '2', '5'); }
bool IsPpm(Head head) { return IsNetpbm(head, '3', '6'); }
bool IsPam(Head head) { return HasAt(head, 0, "P7\nWIDTH"sv) || HasAt(head, 0, "P7\n#"sv); }

bool IsSgi(Head head) {
  return head.size() >= 12 && HasAt(head, 0, "\x01\xDA"sv) && head[2] <= 1 && (head[3] == 1 || head[3] == 2);
}
bool IsSun(Head head) { return HasAt(head, 0, "\x59\xA6\x6A\x95"sv); }
bool IsXbm(Head head) {
  return (HasAt(head, 0, "#define"sv) || HasAt(head, 0, "/*"sv)) && Contains(head, "_width"sv) &&
         Contains(head, "#define"sv);
}
bool IsXpm(Head head) { return HasAt(head, 0, "/* XPM"sv) || HasAt(head, 0, "! XPM2"sv); }
bool IsFits(Head head) { return HasAt(head, 0, "SIMPLE  ="sv); }
bool IsCals(Head head) {
  return HasAt(head, 0, "srcdocid:"sv) || HasAt(head, 0, "version: MIL-STD-1840"sv) || HasAt(head, 0, "rorient:"sv);
}
// The picture follows 512 bytes that belong to the application.
bool IsPict(Head head) { return HasAt(head, 522, "\x00\x11\x02\xFF\x0C\x00"sv) || HasAt(head, 522, "\x11\x01"sv); }
bool IsWpg(Head head) { return HasAt(head, 0, "\xFF\x57\x50\x43"sv); }
bool IsSct(Head head) { return HasAt(head, 80, "CT"sv); }
bool IsCineon(Head head) { return HasAt(head, 0, "\x80\x2A\x5F\xD7"sv) || HasAt(head, 0, "\xD7\x5F\x2A\x80"sv); }
bool IsDpx(Head head) { return HasAt(head, 0, "SDPX"sv) || HasAt(head, 0, "XPDS"sv); }
bool IsMng(Head head) { return HasAt(head, 0, "\x8A\x4D\x4E\x47\x0D\x0A\x1A\x0A"sv); }
bool IsJng(Head head) { return HasAt(head, 0, "\x8B\x4A\x4E\x47\x0D\x0A\x1A\x0A"sv); }
bool IsMiff(Head head) { return HasAt(head, 0, "id=ImageMagick"sv); }
bool IsViff(Head head) { return HasAt(head, 0, "\xAB\x01"sv); }
bool IsVicar(Head head) { return HasAt(head, 0, "LBLSIZE="sv); }
bool IsRle(Head head) { return HasAt(head, 0, "\x52\xCC"sv); }
bool IsXcf(Head head) { return HasAt(head, 0, "gimp xcf"sv); }
bool IsPdb(Head head) { return HasAt(head, 60, "vIMGView"sv); }
bool IsDicom(Head head) { return HasAt(head, 128, "DICM"sv); }
bool IsPhotoCd(Head head) { return HasAt(head, 2048, "PCD_"sv); }

// A blank picture takes as good as no bytes: rows that repeat the one before, or a compression with no end to its runs.
constexpr uint32_t kNoBound = 1u << 28;

constexpr Format kFormats[] = {
    {FMT_PCX, "PCX", "PCX", "pcx;pcc", IsPcx},
    {FMT_DCX, "DCX", "PCX", "dcx", IsDcx},
    {FMT_PBM, "PBM", "Portable map", "pbm", IsPbm},
    {FMT_PGM, "PGM", "Portable map", "pgm", IsPgm},
    {FMT_PPM, "PPM", "Portable map", "ppm;pnm", IsPpm},
    {FMT_PPM, "PAM", "Portable map", "pam", IsPam},
    {FMT_SGI, "SGI", "SGI", "sgi;rgb;rgba;bw", IsSgi},
    {FMT_SUN_RASTER, "SUN", "Sun raster", "ras;sun;im1;im8;im24;im32", IsSun},
    {FMT_XBM, "XBM", "X bitmap", "xbm", IsXbm},
    {FMT_XPM, "XPM", "X pixmap", "xpm", IsXpm},
    {FMT_FITS, "FITS", "FITS", "fit;fits;fts", IsFits},
    {FMT_CALS, "CALS", "CCITT Group 4", "cal;cals", IsCals, kNoBound},
    {FMT_PICT, "PICT", "PICT", "pct;pict", IsPict},
    {FMT_WPG, "WPG", "WordPerfect", "wpg", IsWpg, kNoBound},
    {FMT_SCT, "SCT", "Scitex", "sct;ct", IsSct},
    {FMT_CINEON, "CIN", "Cineon", "cin", IsCineon},
    {FMT_DPX, "DPX", "DPX", "dpx", IsDpx},
    {FMT_MNG, "MNG", "MNG", "mng", IsMng},
    {FMT_JNG, "JNG", "JNG", "jng", IsJng},
    {FMT_MIFF, "MIFF", "MIFF", "miff;mif", IsMiff, kNoBound},
    {FMT_VIFF, "VIFF", "VIFF", "viff;xv", IsViff},
    {FMT_VICAR, "VICAR", "VICAR", "vic;vicar", IsVicar},
    {FMT_RLE, "RLE", "Utah RLE", "rle", IsRle},
    {FMT_XCF, "XCF", "XCF", "xcf", IsXcf},
    {FMT_PDB, "PDB", "Palm database", "pdb", IsPdb},
    {FMT_DICOM_GRAY, "DCM", "DICOM", "dcm;dic;dicom", IsDicom, kNoBound},
    {FMT_PCD, "PCD", "Photo CD", "pcd", IsPhotoCd, kNoBound},
    {FMT_TGA, "TGA", "Targa", "tga;icb;vda;vst", nullptr},
    {FMT_CUT, "CUT", "CUT", "cut", nullptr},
    {FMT_WBMP, "WBMP", "WBMP", "wbmp;wbm", nullptr},
    {FMT_FAX, "FAX", "CCITT Group 3", "fax;g3", nullptr, kNoBound},
    {FMT_AVS, "AVS", "AVS", "avs", nullptr},
    {FMT_MTV, "MTV", "MTV", "mtv", nullptr},
    {FMT_PALM, "PALM", "Palm pixmap", "palm", nullptr},
    {FMT_ART, "ART", "ART", "art", nullptr},
    {FMT_HRZ, "HRZ", "HRZ", "hrz", nullptr},
    {FMT_OTB, "OTB", "OTB", "otb", nullptr},
    {FMT_MAC_PAINT, "MAC", "PackBits", "mac", nullptr},
    {FMT_RLA, "RLA", "RLA", "rla", nullptr},
    {FMT_PIX, "PIX", "PIX", "pix;matte", nullptr},
    {FMT_TIM, "TIM", "TIM", "tim", nullptr},
};

bool HasExtension(std::string_view list, std::string_view extension) {
  while (!list.empty()) {
    const size_t end = std::min(list.find(';'), list.size());
    if (list.substr(0, end) == extension) return true;
    list.remove_prefix(std::min(end + 1, list.size()));
  }
  return false;
}

}  // namespace

std::span<const Format> AllFormats() { return kFormats; }

const Format* FindByContent(ByteSource& source) {
  uint8_t bytes[kHeadBytes];
  const Head head(bytes, source.ReadAt(0, bytes, sizeof bytes));
  const auto found = std::find_if(std::begin(kFormats), std::end(kFormats),
                                  [&](const Format& format) { return format.matches && format.matches(head); });
  return found == std::end(kFormats) ? nullptr : found;
}

const Format* FindByExtension(const std::string& extension) {
  const auto found = std::find_if(std::begin(kFormats), std::end(kFormats), [&](const Format& format) {
    return !format.matches && HasExtension(format.extensions, extension);
  });
  return found == std::end(kFormats) ? nullptr : found;
}

}  // namespace zvfile::magick
