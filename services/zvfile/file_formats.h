/* The file format numbers of the file library. They stand in FILEINFO, in the save calls and in the catalogue, and never
 * change once given. A number names a format together with its compression, since that is what a save call chooses.
 */
#ifndef ZV_FILE_FORMATS_H
#define ZV_FILE_FORMATS_H

enum FileFormat {
  FILE_UNKNOWN = 0,

  /* JPEG family: the variants differ in chroma sub-sampling alone. */
  FILE_JPEG = 10,      /* 4:4:4, or grey */
  FILE_JPEG_422 = 21,
  FILE_JPEG_420 = 23,
  FILE_EXIF_JPEG_422 = 98, /* with an Exif segment and comments */
  FILE_EXIF_JPEG_420 = 101,

  /* Exif TIFF carriers with comments. */
  FILE_EXIF_TIFF_RGB = 96,
  FILE_EXIF_TIFF_YCC = 97,

  FILE_GIF = 2,
  FILE_PNG = 75,
  FILE_BMP = 6,
  FILE_BMP_RLE = 7,

  /* TIFF family by compression: pages are costly to count. */
  FILE_TIFF = 3,            /* uncompressed */
  FILE_TIFF_JPEG = 11,      /* JPEG, 4:4:4 or grey */
  FILE_TIFF_PACKBITS = 17,
  FILE_TIFF_JPEG_422 = 22,
  FILE_TIFF_JPEG_420 = 24,
  FILE_TIFF_LZW = 25,       /* with the horizontal predictor where it helps */
  FILE_TIFF_CCITT = 27,     /* modified Huffman, bilevel */
  FILE_TIFF_G3_1D = 28,
  FILE_TIFF_G3_2D = 29,
  FILE_TIFF_G4 = 85,
  FILE_TIFF_DEFLATE = 86,   /* Adobe deflate */
  FILE_TIFF_LZMA = 87,
  FILE_TIFF_ZSTD = 88,
  FILE_TIFF_WEBP = 93,
  FILE_TIFF_CMYK = 94,      /* read only: CMYK separations, converted on load */
  FILE_TIFF_YCC = 95,       /* uncompressed YCbCr */
  FILE_TIFF_SGILOG = 138,   /* read only */
  FILE_TIFF_OLD_JPEG = 139, /* read only: compression 6 */
  FILE_BIGTIFF = 166,       /* 64-bit offsets, uncompressed */
  FILE_BIGTIFF_DEFLATE = 167,

  /* Our own containers. */
  FILE_CMP = 5,      /* Zorvane CMP over a JPEG stream, with stamp and pages */
  FILE_CMP_OLD = 20, /* read as FILE_CMP */
  FILE_ABC = 32,
  FILE_ABC_LOSSY = 180,

  FILE_WEBP = 310,

  /* JPEG 2000: loaded at a resolution level. */
  FILE_J2K = 163,
  FILE_JP2 = 164,
  FILE_JPX = 165,
  FILE_JPM = 323,

  /* Icons. */
  FILE_ICO = 115,
  FILE_ICO_PNG = 322,
  FILE_CUR = 117,

  FILE_HD_PHOTO = 277,
  FILE_DICOM_GRAY = 89,
  FILE_DICOM_COLOR = 90,
  FILE_PCD = 80, /* 80 to 83: Photo CD */

  /* Metafiles and vector drawings. */
  FILE_WMF = 15,
  FILE_EMF = 116,
  FILE_WMZ = 307,
  FILE_DXF = 58,
  FILE_DWF = 62,
  FILE_DWG = 56,
  FILE_DRW = 123,
  FILE_HPGL = 137,
  FILE_SVG = 247,

  /* Read through the long-tail library. */
  FILE_PSD = 401,
  FILE_PCX = 402,
  FILE_DCX = 403,
  FILE_TGA = 404,
  FILE_PBM = 405,
  FILE_PGM = 406,
  FILE_PPM = 407,
  FILE_SGI = 408,
  FILE_SUN_RASTER = 409,
  FILE_XWD = 410,
  FILE_XBM = 411,
  FILE_XPM = 412,
  FILE_FITS = 413,
  FILE_CUT = 414,
  FILE_CALS = 415,
  FILE_PICT = 416,
  FILE_WPG = 417,
  FILE_SCT = 418,
  FILE_CINEON = 419,
  FILE_DPX = 420,
  FILE_WBMP = 421,
  FILE_FAX = 422,
  FILE_MNG = 423,
  FILE_JNG = 424,
  FILE_AVS = 425,
  FILE_MIFF = 426,
  FILE_MTV = 427,
  FILE_PALM = 428,
  FILE_VIFF = 429,
  FILE_VICAR = 430,
  FILE_ART = 431,
  FILE_HRZ = 432,
  FILE_OTB = 433,
  FILE_MAC_PAINT = 434,
  FILE_RLA = 435,
  FILE_RLE = 436,
  FILE_PIX = 437,
  FILE_XCF = 438,
  FILE_TIM = 439,
  FILE_PDB = 440,
  FILE_JBIG = 441
};

#endif
