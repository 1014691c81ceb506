/* The file format numbers of the file library. They stand in FILEINFO, in the save calls and in the catalogue, and never
 * change once given. A number names a format together with its compression, since that is what a save call chooses.
 */
#ifndef ZV_FILE_FORMATS_H
#define ZV_FILE_FORMATS_H

enum FileFormat {
  FMT_UNKNOWN = 0,

  /* JPEG family: the variants differ in chroma sub-sampling alone. */
  FMT_JPEG = 10, /* 4:4:4, or grey */
  FMT_JPEG_422 = 21,
  FMT_JPEG_420 = 23,
  FMT_EXIF_JPEG_422 = 98, /* with an Exif segment and comments */
  FMT_EXIF_JPEG_420 = 101,

  /* Exif TIFF carriers with comments. */
  FMT_EXIF_TIFF_RGB = 96,
  FMT_EXIF_TIFF_YCC = 97,

  FMT_GIF = 2,
  FMT_PNG = 75,
  FMT_BMP = 6,
  FMT_BMP_RLE = 7,

  /* TIFF family by compression: pages are costly to count. */
  FMT_TIFF = 3,       /* uncompressed */
  FMT_TIFF_JPEG = 11, /* JPEG, 4:4:4 or grey */
  FMT_TIFF_PACKBITS = 17,
  FMT_TIFF_JPEG_422 = 22,
  FMT_TIFF_JPEG_420 = 24,
  FMT_TIFF_LZW = 25,   /* with the horizontal predictor where it helps */
  FMT_TIFF_CCITT = 27, /* modified Huffman, bilevel */
  FMT_TIFF_G3_1D = 28,
  FMT_TIFF_G3_2D = 29,
  FMT_TIFF_G4 = 85,
  FMT_TIFF_DEFLATE = 86, /* Adobe deflate */
  FMT_TIFF_LZMA = 87,
  FMT_TIFF_ZSTD = 88,
  FMT_TIFF_WEBP = 93,
  FMT_TIFF_CMYK = 94,      /* read only: CMYK separations, converted on load */
  FMT_TIFF_YCC = 95,       /* uncompressed YCbCr */
  FMT_TIFF_SGILOG = 138,   /* read only */
  FMT_TIFF_OLD_JPEG = 139, /* read only: compression 6 */
  FMT_BIGTIFF = 166,       /* 64-bit offsets, uncompressed */
  FMT_BIGTIFF_DEFLATE = 167,

  /* Our own containers. */
  FMT_CMP = 5,      /* Zorvane CMP over a JPEG stream, with stamp and pages */
  FMT_CMP_OLD = 20, /* read as FMT_CMP */
  FMT_ABC = 32,
  FMT_ABC_LOSSY = 180,

  FMT_WEBP = 310,

  /* JPEG 2000: loaded at a resolution level. */
  FMT_J2K = 163,
  FMT_JP2 = 164,
  FMT_JPX = 165,
  FMT_JPM = 323,

  /* Icons. */
  FMT_ICO = 115,
  FMT_ICO_PNG = 322,
  FMT_CUR = 117,

  FMT_HD_PHOTO = 277,
  FMT_DICOM_GRAY = 89,
  FMT_DICOM_COLOR = 90,
  FMT_PCD = 80, /* 80 to 83: Photo CD */

  /* Metafiles and vector drawings. */
  FMT_WMF = 15,
  FMT_EMF = 116,
  FMT_WMZ = 307,
  FMT_DXF = 58,
  FMT_DWF = 62,
  FMT_DWG = 56,
  FMT_DRW = 123,
  FMT_HPGL = 137,
  FMT_SVG = 247,

  /* Read through the long-tail library. */
  FMT_PSD = 401,
  FMT_PCX = 402,
  FMT_DCX = 403,
  FMT_TGA = 404,
  FMT_PBM = 405,
  FMT_PGM = 406,
  FMT_PPM = 407,
  FMT_SGI = 408,
  FMT_SUN_RASTER = 409,
  FMT_XWD = 410,
  FMT_XBM = 411,
  FMT_XPM = 412,
  FMT_FITS = 413,
  FMT_CUT = 414,
  FMT_CALS = 415,
  FMT_PICT = 416,
  FMT_WPG = 417,
  FMT_SCT = 418,
  FMT_CINEON = 419,
  FMT_DPX = 420,
  FMT_WBMP = 421,
  FMT_FAX = 422,
  FMT_MNG = 423,
  FMT_JNG = 424,
  FMT_AVS = 425,
  FMT_MIFF = 426,
  FMT_MTV = 427,
  FMT_PALM = 428,
  FMT_VIFF = 429,
  FMT_VICAR = 430,
  FMT_ART = 431,
  FMT_HRZ = 432,
  FMT_OTB = 433,
  FMT_MAC_PAINT = 434,
  FMT_RLA = 435,
  FMT_RLE = 436,
  FMT_PIX = 437,
  FMT_XCF = 438,
  FMT_TIM = 439,
  FMT_PDB = 440,
  FMT_JBIG = 441
};

#endif
