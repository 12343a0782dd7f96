/**
 * @file pqx_video.h
 * Inner loops of video codecs and still-picture pipelines for x86-64 Linux.
 *
 * What holds for every operation, unless its own comment says otherwise:
 *
 * - It reads and writes only the caller's buffers, keeps nothing between calls, starts no thread and may run on
 *   any number of threads at once on disjoint destinations.
 * - It returns #PQX_OK. Pointers, alignment and steps are not checked; no buffer needs any alignment, and a 16-bit
 *   buffer may start at an odd address.
 * - A size below the operation's minimum makes it do nothing and return #PQX_OK.
 * - Sources may overlap each other. A destination must not overlap any other buffer, unless a parameter's comment
 *   allows it, nor its rows each other. One that may equal a source then starts at the same address and has the same
 *   step.
 * - A step is the signed distance in bytes from the start of one row to the start of the next; a negative step
 *   walks the rows upward. A row without a step is contiguous.
 * - Every function is exported twice at one entry, as declared here and with "__" in front of its name; calls
 *   inside the library go through the second name.
 * - Some operations work in floating point: pqx_Video_DCT8x8Fwd_16S(), pqx_Video_DCT8x8Inv_16S(),
 *   pqx_Video_DCT8x8Inv_16S_8U() and their other forms (but for the DC and IEEE forms, which are integer),
 *   pqx_Video_DCT4x4Fwd_16S(), pqx_Video_DCT16x16Fwd_16S(), all of quantization, pqx_Video_ColorRGB2YCC444_16S() and
 *   pqx_Video_ColorYCC2RGB444_16S(). They assume the default rounding mode (to nearest, ties to even) and that
 *   subnormal numbers are neither flushed to zero nor read as zero. For samples and coefficients in their ranges
 *   none raises the invalid, divide-by-zero or overflow exception, except by step sizes of 0 and states that are the
 *   caller's own.
 *
 * Sample types are named by suffixes: 8U unsigned 8-bit, 16S signed 16-bit, 32U unsigned 32-bit; 10S and 12S are
 * signed 16-bit containers of 10 or 12 significant bits; _I works in place. Packed pixels are named by their bytes
 * from the lowest address up: ARGB is A, R, G, B. Shifts of negative numbers round toward minus infinity.
 */
#ifndef PQX_VIDEO_H
#define PQX_VIDEO_H

#include <stdint.h>

#if defined(__GNUC__)
#define PQX_API __attribute__((visibility("default")))
#else
#define PQX_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/**
 * @defgroup core Library services
 * Status codes, version, aligned memory and the thread-count setting.
 * @{
 */

/**
 * @name Release of this header
 * For the preprocessor. The text of pqx_GetVersion() is fixed by its interface and does not follow them.
 * @{
 */
#define PQX_VERSION_MAJOR 1 /**< The same as long as programs need no change. */
#define PQX_VERSION_MINOR 2 /**< Grows with what is added. */
#define PQX_VERSION_PATCH 0 /**< Grows with what is mended. */
/** All three as one number for comparing, as 10100 for 1.1.0. */
#define PQX_VERSION_NUMBER (10000 * PQX_VERSION_MAJOR + 100 * PQX_VERSION_MINOR + PQX_VERSION_PATCH)
/** @} */

/** Result of an operation: one of #PQX_OK, #PQX_ERR_PARAM, #PQX_ERR_MEMORY, #PQX_ERR_DATA. */
typedef int32_t pqx_Status;

#define PQX_OK 0         /**< No error. */
#define PQX_ERR_PARAM 1  /**< Invalid, out of range or unsupported parameter; no operation returns it. */
#define PQX_ERR_MEMORY 2 /**< Scratch memory could not be allocated; nothing was written. */
#define PQX_ERR_DATA 3   /**< Incorrect data; no operation returns it. */

/** The text of pqx_GetVersion() behind "@(#)", for tools that search a file for that mark. */
extern PQX_API const char pqxid[39];

/** The setting behind pqx_SetNumThreads() and pqx_GetNumThreads(); -1 until it is set. No operation reads it. */
extern PQX_API int32_t pqx_nthreads;

/**
 * Names a status in English.
 *
 * @param status  any value
 * @return a static text, never null; "Unknown Status" for a value that is none of the four codes
 */
PQX_API const char* pqx_GetStringStatus(pqx_Status status);

/**
 * Tells the version of the library: product, version number, build date, platform and revision, each followed by
 * a colon.
 *
 * @return the static text "PQX:1100:20240723:linux-x8664:svn:"
 */
PQX_API const char* pqx_GetVersion(void);

/**
 * Allocates memory at an address that is a multiple of 64.
 *
 * @param size  bytes wanted; below 1 gives null
 * @return at least size bytes, to be given back by pqx_Free(), or null when there is no memory
 */
PQX_API void* pqx_Malloc(int32_t size);

/**
 * Gives back memory from pqx_Malloc().
 *
 * @param ptr  a pointer from pqx_Malloc(), not yet given back, or null, which does nothing
 */
PQX_API void pqx_Free(void* ptr);

/**
 * Rounds an address up to a multiple of a power of two.
 *
 * @param ptr    any address
 * @param align  a positive power of two, in bytes; other values give a meaningless address
 * @return the lowest multiple of align that is not below ptr
 */
PQX_API void* pqx_AlignPointer(void* ptr, int32_t align);

/**
 * Reports the thread-count setting.
 *
 * @param pNumThreads  receives the value last given to pqx_SetNumThreads(), or -1 if there was none
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_GetNumThreads(int32_t* pNumThreads);

/**
 * Stores a thread count for others to read. The library itself never starts a thread. Reads and writes of the
 * setting are not synchronised.
 *
 * @param numThreads  any value, kept as it is
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_SetNumThreads(int32_t numThreads);

/** @} */

/**
 * @defgroup mc Motion compensation
 * Prediction blocks from reference pictures, residuals added to them, and the cost of a match.
 *
 * Where an operation takes one step for source and destination, both lie in pictures of the same row pitch. A
 * packed 16-bit block has no step: its rows follow one another. Where the result of an interpolation overlaps its
 * source, it is that of taking the samples one after the other, row after row.
 * @{
 */

/**
 * Copies a block of 8 or 16 columns, row after row.
 *
 * With `w = width == 8 ? 8 : 16`:
 *
 * @param pSrc    reference block. Reads `height rows of w bytes, step apart`.
 * @param pDst    prediction. Writes `height rows of w bytes, step apart`. May equal `pSrc`, or overlap rows of it
 *                that are done.
 * @param step    bytes from row to row of both
 * @param width   8 means 8 columns, any other value 16
 * @param height  rows; 0 or less does nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_CopyRef_8U(const uint8_t* pSrc, uint8_t* pDst, int step, int width, int height);

/**
 * Averages a block into a prediction, row after row: pSrcDst = (pSrc + pSrcDst + 1) >> 1.
 *
 * With `w = width / 8 * 8`:
 *
 * @param pSrc     reference block. Reads `height rows of w bytes, step apart`.
 * @param pSrcDst  prediction, in place. Reads and writes `height rows of w bytes, step apart`. May
 *                 equal `pSrc`, or overlap rows of it that are done.
 * @param step     bytes from row to row of both
 * @param width    columns, rounded down to a multiple of 8; below 8 does nothing
 * @param height   rows; 0 or less does nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_CopyRefAve_8U(const uint8_t* pSrc, uint8_t* pSrcDst, int step, int width, int height);

/**
 * Copies a block, widening its samples to 16 bits.
 *
 * With `w = width / 2 * 2`:
 *
 * @param pSrc     reference block. Reads `height rows of w bytes, srcStep apart`.
 * @param srcStep  bytes from row to row of pSrc
 * @param pDst     packed block; an odd last element of a row is left as it is; where it overlaps the source, samples
 *                 are taken in pairs one after the other. Writes `height rows of 2 * w bytes, 2 * width apart`. May
 *                 overlap `pSrc`.
 * @param width    columns, rounded down to a multiple of 2 (but the rows of pDst stay width elements long); below 2
 *                 does nothing
 * @param height   rows; 0 or less does nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_CopyRef_8U_16S(const uint8_t* pSrc, int srcStep, int16_t* pDst, int width, int height);

/**
 * Mean of two predictions, exact halves downward: (a + b) >> 1.
 *
 * With `w = width == 2 || width == 4 || width == 8 ? width : 16` and `h = (height + 3) / 4 * 4`:
 *
 * @param pSrc1     first prediction a. Reads `h rows of w bytes, src1Step apart`.
 * @param src1Step  bytes from row to row of pSrc1
 * @param pSrc2     second prediction b. Reads `h rows of w bytes, src2Step apart`.
 * @param src2Step  bytes from row to row of pSrc2
 * @param pDst      result. Writes `h rows of w bytes, dstStep apart`. May equal `pSrc1` or `pSrc2`.
 * @param dstStep   bytes from row to row of pDst
 * @param width     2, 4 or 8 columns; any other value means 16
 * @param height    rows, in bands of four: rounded up to a multiple of 4; 0 or less does nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_Average2NoRnd_8U(const uint8_t* pSrc1, int src1Step, const uint8_t* pSrc2, int src2Step,
                                              uint8_t* pDst, int dstStep, int width, int height);

/**
 * Mean of two predictions, exact halves upward: (a + b + 1) >> 1.
 *
 * With `w = width == 2 || width == 4 || width == 8 ? width : 16` and `h = (height + 3) / 4 * 4`:
 *
 * @param pSrc1     first prediction a. Reads `h rows of w bytes, src1Step apart`.
 * @param src1Step  bytes from row to row of pSrc1
 * @param pSrc2     second prediction b. Reads `h rows of w bytes, src2Step apart`.
 * @param src2Step  bytes from row to row of pSrc2
 * @param pDst      result. Writes `h rows of w bytes, dstStep apart`. May equal `pSrc1` or `pSrc2`.
 * @param dstStep   bytes from row to row of pDst
 * @param width     2, 4 or 8 columns; any other value means 16
 * @param height    rows, in bands of four: rounded up to a multiple of 4; 0 or less does nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_Average2Rnd_8U(const uint8_t* pSrc1, int src1Step, const uint8_t* pSrc2, int src2Step,
                                            uint8_t* pDst, int dstStep, int width, int height);

/**
 * Mean of two predictions, exact halves downward, averaged into a third: t = (a + b) >> 1, d = (t + d + 1) >> 1.
 * The second mean rounds halves upward in both forms.
 *
 * With `w = width == 2 || width == 4 || width == 8 ? width : 16` and `h = (height + 3) / 4 * 4`:
 *
 * @param pSrc1     first prediction a. Reads `h rows of w bytes, src1Step apart`.
 * @param src1Step  bytes from row to row of pSrc1
 * @param pSrc2     second prediction b. Reads `h rows of w bytes, src2Step apart`.
 * @param src2Step  bytes from row to row of pSrc2
 * @param pSrcDst   third prediction d, replaced by the result. Reads and writes `h rows of w bytes, dstStep apart`.
 *                  May equal `pSrc1` or `pSrc2`.
 * @param dstStep   bytes from row to row of pSrcDst
 * @param width     2, 4 or 8 columns; any other value means 16
 * @param height    rows, in bands of four: rounded up to a multiple of 4; 0 or less does nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_Average3NoRnd_8U(const uint8_t* pSrc1, int src1Step, const uint8_t* pSrc2, int src2Step,
                                              uint8_t* pSrcDst, int dstStep, int width, int height);

/**
 * Mean of two predictions, exact halves upward, averaged into a third: t = (a + b + 1) >> 1, d = (t + d + 1) >> 1.
 * The second mean rounds halves upward in both forms.
 *
 * With `w = width == 2 || width == 4 || width == 8 ? width : 16` and `h = (height + 3) / 4 * 4`:
 *
 * @param pSrc1     first prediction a. Reads `h rows of w bytes, src1Step apart`.
 * @param src1Step  bytes from row to row of pSrc1
 * @param pSrc2     second prediction b. Reads `h rows of w bytes, src2Step apart`.
 * @param src2Step  bytes from row to row of pSrc2
 * @param pSrcDst   third prediction d, replaced by the result. Reads and writes `h rows of w bytes, dstStep apart`.
 *                  May equal `pSrc1` or `pSrc2`.
 * @param dstStep   bytes from row to row of pSrcDst
 * @param width     2, 4 or 8 columns; any other value means 16
 * @param height    rows, in bands of four: rounded up to a multiple of 4; 0 or less does nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_Average3Rnd_8U(const uint8_t* pSrc1, int src1Step, const uint8_t* pSrc2, int src2Step,
                                            uint8_t* pSrcDst, int dstStep, int width, int height);

/**
 * Adds an 8x8 block of residuals to a prediction, in place, saturating to 0..255.
 *
 * @param pSrc     residuals of any value, row-major, taken one after the other, row after row, where they overlap the
 *                 picture. Reads `128 bytes`. May overlap `pSrcDst`.
 * @param pSrcDst  samples of the picture. Reads and writes `8 rows of 8 bytes, step apart`.
 * @param step     bytes from row to row of pSrcDst, of any value
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_AddBlock_16S_8U_I(const int16_t* pSrc, uint8_t* pSrcDst, int step);

/**
 * Interpolates a block at a horizontal half-sample position: (a + b + 1) >> 1, with the sample b to the right of
 * a.
 *
 * With `w = width / 8 * 8` and `wide = w > 0 ? w + 1 : 0`:
 *
 * @param pSrc    reference block; one column to the right of the block is read. Reads `height rows of wide bytes,
 *                step apart`.
 * @param pDst    prediction. Writes `height rows of w bytes, step apart`. May overlap `pSrc`.
 * @param step    bytes from row to row of both
 * @param width   columns, rounded down to a multiple of 8; below 8 does nothing
 * @param height  rows; 0 or less does nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_InterpX_8U(const uint8_t* pSrc, uint8_t* pDst, int step, int width, int height);

/**
 * Interpolates a block at a vertical half-sample position: (a + c + 1) >> 1, with the sample c = pSrc[i + srcStep]
 * below a.
 *
 * With `w = width / 4 * 4`:
 *
 * @param pSrc     reference block; one row below each row is read. Reads `height rows of w bytes, step apart, from 0,
 *                 srcStep`.
 * @param pDst     prediction. Writes `height rows of w bytes, step apart`. May overlap `pSrc`.
 * @param srcStep  distance in bytes from a sample to the one below it; may differ from step
 * @param step     bytes from row to row of both
 * @param width    columns, rounded down to a multiple of 4; below 4 does nothing
 * @param height   rows; 0 or less does nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_InterpY_8U(const uint8_t* pSrc, uint8_t* pDst, int srcStep, int step, int width,
                                        int height);

/**
 * Interpolates a block at a diagonal half-sample position: (a + b + c + e + 2) >> 2, with b to the right of a, c =
 * pSrc[i + srcStep] below a, e to the right of c.
 *
 * With `w = width / 4 * 4` and `wide = w > 0 ? w + 1 : 0`:
 *
 * @param pSrc     reference block; one column to the right and one row below are read. Reads
 *                 `height rows of wide bytes, step apart, from 0, srcStep`.
 * @param pDst     prediction. Writes `height rows of w bytes, step apart`. May overlap `pSrc`.
 * @param srcStep  distance in bytes from a sample to the one below it; may differ from step
 * @param step     bytes from row to row of both
 * @param width    columns, rounded down to a multiple of 4; below 4 does nothing
 * @param height   rows; 0 or less does nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_InterpXY_8U(const uint8_t* pSrc, uint8_t* pDst, int srcStep, int step, int width,
                                         int height);

/**
 * Interpolates a block at a horizontal half-sample position and averages it into a prediction d, rounding once:
 * (2d + a + b + 3) >> 2, with the sample b to the right of a.
 *
 * With `w = width / 4 * 4` and `wide = w > 0 ? w + 1 : 0`:
 *
 * @param pSrc     reference block; one column to the right of the block is read. Reads `height rows of wide bytes,
 *                 step apart`.
 * @param pSrcDst  prediction d, in place. Reads and writes `height rows of w bytes, step apart`. May overlap `pSrc`.
 * @param step     bytes from row to row of both
 * @param width    columns, rounded down to a multiple of 4; below 4 does nothing
 * @param height   rows; 0 or less does nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_InterpAveX_8U(const uint8_t* pSrc, uint8_t* pSrcDst, int step, int width, int height);

/**
 * Interpolates a block at a vertical half-sample position and averages it into a prediction d, rounding once:
 * (2d + a + c + 3) >> 2, with the sample c = pSrc[i + srcStep] below a.
 *
 * With `w = width / 4 * 4`:
 *
 * @param pSrc     reference block; one row below each row is read. Reads `height rows of w bytes, step apart, from 0,
 *                 srcStep`.
 * @param pSrcDst  prediction d, in place. Reads and writes `height rows of w bytes, step apart`. May overlap `pSrc`.
 * @param srcStep  distance in bytes from a sample to the one below it; may differ from step
 * @param step     bytes from row to row of both
 * @param width    columns, rounded down to a multiple of 4; below 4 does nothing
 * @param height   rows; 0 or less does nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_InterpAveY_8U(const uint8_t* pSrc, uint8_t* pSrcDst, int srcStep, int step, int width,
                                           int height);

/**
 * Interpolates a block at a diagonal half-sample position and averages it into a prediction d, rounding once:
 * (4d + a + b + c + e + 6) >> 3, with b to the right of a, c = pSrc[i + srcStep] below a, e to the right of c.
 *
 * With `w = width / 4 * 4` and `wide = w > 0 ? w + 1 : 0`:
 *
 * @param pSrc     reference block; one column to the right and one row below are read. Reads
 *                 `height rows of wide bytes, step apart, from 0, srcStep`.
 * @param pSrcDst  prediction d, in place. Reads and writes `height rows of w bytes, step apart`. May overlap `pSrc`.
 * @param srcStep  distance in bytes from a sample to the one below it; may differ from step
 * @param step     bytes from row to row of both
 * @param width    columns, rounded down to a multiple of 4; below 4 does nothing
 * @param height   rows; 0 or less does nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_InterpAveXY_8U(const uint8_t* pSrc, uint8_t* pSrcDst, int srcStep, int step, int width,
                                            int height);

/**
 * Interpolates a block at a horizontal half-sample position into 16-bit elements: (a + b + 1) >> 1, with the
 * sample b to the right of a.
 *
 * With `w = width == 8 ? 8 : 16`:
 *
 * @param pSrc     reference block; one column to the right of the block is read. Reads `height rows of w + 1 bytes,
 *                 srcStep apart`.
 * @param srcStep  bytes from row to row of pSrc
 * @param pDst     packed block. Writes `2 * w * height bytes`. May overlap `pSrc`.
 * @param width    8 means 8 columns, any other value 16
 * @param height   rows; 0 or less does nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_InterpX_8U_16S(const uint8_t* pSrc, int srcStep, int16_t* pDst, int width, int height);

/**
 * Interpolates a block at a vertical half-sample position into 16-bit elements: (a + c + 1) >> 1, with the sample
 * c = pSrc[i + srcStep] below a.
 *
 * With `w = width == 8 ? 8 : 16`:
 *
 * @param pSrc     reference block; one row below each row is read. Reads `height rows of w bytes, step apart, from 0,
 *                 srcStep`.
 * @param srcStep  distance in bytes from a sample to the one below it; may differ from step
 * @param step     bytes from row to row of pSrc
 * @param pDst     packed block. Writes `2 * w * height bytes`. May overlap `pSrc`.
 * @param width    8 means 8 columns, any other value 16
 * @param height   rows; 0 or less does nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_InterpY_8U_16S(const uint8_t* pSrc, int srcStep, int step, int16_t* pDst, int width,
                                            int height);

/**
 * Interpolates a block at a diagonal half-sample position into 16-bit elements: (a + b + c + e + 2) >> 2, with b
 * to the right of a, c = pSrc[i + srcStep] below a, e to the right of c.
 *
 * With `w = width == 8 ? 8 : 16`:
 *
 * @param pSrc     reference block; one column to the right and one row below are read. Reads
 *                 `height rows of w + 1 bytes, step apart, from 0, srcStep`.
 * @param srcStep  distance in bytes from a sample to the one below it; may differ from step
 * @param step     bytes from row to row of pSrc
 * @param pDst     packed block. Writes `2 * w * height bytes`. May overlap `pSrc`.
 * @param width    8 means 8 columns, any other value 16
 * @param height   rows; 0 or less does nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_InterpXY_8U_16S(const uint8_t* pSrc, int srcStep, int step, int16_t* pDst, int width,
                                             int height);

/**
 * Interpolates one block at all three half-sample positions. The last column and the last row are repeated
 * outward: nothing outside the block is read, X equals the source in the last column, Y in the last row.
 *
 * Width 16 is handed to pqx_VideoInterpX_Y_XY_8U_w16(), widths other than 8 and 16 to
 * pqx_VideoInterpX_Y_XY_8U_comm().
 *
 * Needs `width > 0`. With `h = max(height, 1)`:
 *
 * @param pSrc    reference block. Reads `h rows of width bytes, step apart`.
 * @param step    bytes from row to row of the source and of all three results
 * @param width   columns, 1 or more
 * @param height  rows; below 1 is taken as 1: the last row is always written
 * @param pDstX   horizontal positions: (a + b + 1) >> 1. Writes `h rows of width bytes, step apart`.
 * @param pDstY   vertical positions: (a + c + 1) >> 1. Writes `h rows of width bytes, step apart`.
 * @param pDstXY  diagonal positions: (a + b + c + e + 2) >> 2. Writes `h rows of width bytes, step apart`.
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_InterpX_Y_XY_8U(const uint8_t* pSrc, int step, int width, int height, uint8_t* pDstX,
                                             uint8_t* pDstY, uint8_t* pDstXY);

/**
 * Does the work of pqx_Video_InterpX_Y_XY_8U() for 16 columns. Exported under this name only.
 *
 * With `h = max(height, 1)`:
 *
 * @param pSrc    reference block. Reads `h rows of 16 bytes, step apart`.
 * @param pDstX   horizontal positions: (a + b + 1) >> 1. Writes `h rows of 16 bytes, step apart`.
 * @param pDstY   vertical positions: (a + c + 1) >> 1. Writes `h rows of 16 bytes, step apart`.
 * @param pDstXY  diagonal positions: (a + b + c + e + 2) >> 2. Writes `h rows of 16 bytes, step apart`.
 * @param step    bytes from row to row of the source and of all three results
 * @param height  rows; below 1 is taken as 1
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_VideoInterpX_Y_XY_8U_w16(const uint8_t* pSrc, uint8_t* pDstX, uint8_t* pDstY, uint8_t* pDstXY,
                                                int step, int height);

/**
 * Does the work of pqx_Video_InterpX_Y_XY_8U() for any number of columns. Exported under this name only.
 *
 * Needs `width > 0`. With `h = max(height, 1)`:
 *
 * @param pSrc    reference block. Reads `h rows of width bytes, step apart`.
 * @param pDstX   horizontal positions: (a + b + 1) >> 1. Writes `h rows of width bytes, step apart`.
 * @param pDstY   vertical positions: (a + c + 1) >> 1. Writes `h rows of width bytes, step apart`.
 * @param pDstXY  diagonal positions: (a + b + c + e + 2) >> 2. Writes `h rows of width bytes, step apart`.
 * @param step    bytes from row to row of the source and of all three results
 * @param width   columns, 1 or more
 * @param height  rows; below 1 is taken as 1
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_VideoInterpX_Y_XY_8U_comm(const uint8_t* pSrc, uint8_t* pDstX, uint8_t* pDstY, uint8_t* pDstXY,
                                                 int step, int width, int height);

/**
 * Overlapped motion compensation of an 8x8 luma block, as in H.263 Annex F: every sample is
 * (H0 q0 + H1 q1 + H2 q2 + 4) >> 3 of the predictions by its own motion, by that of the block above (upper half) or
 * below (lower half), and by that of the block to the left (left half) or right (right half), with the weighting
 * matrices of the annex.
 *
 * The reference is interpolated to twice the resolution in both directions. A prediction at grid position (x, y)
 * is made of the samples pRef[y * refStep + x + 2r * refStep + 2c] for r, c = 0..7. Of y * refStep the low 32 bits
 * count, as a signed number; x is added to it in 64 bits.
 *
 * With `cur = int32(curY * refStep) + curX`, `above = int32(aboveY * refStep) + aboveX`,
 * `below = int32(belowY * refStep) + belowX`, `left = int32(leftY * refStep) + leftX` and
 * `right = int32(rightY * refStep) + rightX`:
 *
 * @param pRef     reference on the half-sample grid; 15x15 grid samples are spanned by each of the five predictions.
 *                 May read `8 rows of 15 bytes, 2 * refStep apart, from cur, above, below, left, right`.
 * @param refStep  bytes from grid row to grid row
 * @param pDst     prediction. Writes `8 rows of 8 bytes, dstStep apart`.
 * @param dstStep  bytes from row to row of pDst
 * @param curX     column of the prediction with the motion of the block itself
 * @param curY     row of the prediction with the motion of the block itself
 * @param aboveX   column of the prediction with the motion of the block above
 * @param aboveY   row of the prediction with the motion of the block above
 * @param belowX   column of the prediction with the motion of the block below
 * @param belowY   row of the prediction with the motion of the block below
 * @param leftX    column of the prediction with the motion of the block to the left
 * @param leftY    row of the prediction with the motion of the block to the left
 * @param rightX   column of the prediction with the motion of the block to the right
 * @param rightY   row of the prediction with the motion of the block to the right
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_H263OverlappedMC_8U(const uint8_t* pRef, int refStep, uint8_t* pDst, int dstStep,
                                                 int curX, int curY, int aboveX, int aboveY, int belowX, int belowY,
                                                 int leftX, int leftY, int rightX, int rightY);

/**
 * Overlapped motion compensation of an 8x8 luma block into 16-bit elements, as pqx_Video_H263OverlappedMC_8U().
 *
 * With `cur = int32(curY * refStep) + curX`, `above = int32(aboveY * refStep) + aboveX`,
 * `below = int32(belowY * refStep) + belowX`, `left = int32(leftY * refStep) + leftX` and
 * `right = int32(rightY * refStep) + rightX`:
 *
 * @param pRef     reference on the half-sample grid. May read `8 rows of 15 bytes, 2 * refStep apart, from cur,
 *                 above, below, left, right`.
 * @param refStep  bytes from grid row to grid row
 * @param pDst     prediction, row-major. Writes `128 bytes`.
 * @param curX     column of the prediction with the motion of the block itself
 * @param curY     row of the prediction with the motion of the block itself
 * @param aboveX   column of the prediction with the motion of the block above
 * @param aboveY   row of the prediction with the motion of the block above
 * @param belowX   column of the prediction with the motion of the block below
 * @param belowY   row of the prediction with the motion of the block below
 * @param leftX    column of the prediction with the motion of the block to the left
 * @param leftY    row of the prediction with the motion of the block to the left
 * @param rightX   column of the prediction with the motion of the block to the right
 * @param rightY   row of the prediction with the motion of the block to the right
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_H263OverlappedMC_8U_16S(const uint8_t* pRef, int refStep, int16_t* pDst, int curX,
                                                     int curY, int aboveX, int aboveY, int belowX, int belowY,
                                                     int leftX, int leftY, int rightX, int rightY);

/**
 * Sum of absolute differences of two blocks, the cost of a candidate in motion search.
 *
 * With `w = (width + 7) / 8 * 8`:
 *
 * @param pSrc1   first block. Reads `height rows of w bytes, step apart`.
 * @param pSrc2   second block. Reads `height rows of w bytes, step apart`.
 * @param step    bytes from row to row of both
 * @param width   columns, rounded up to a multiple of 8; below 1 sums nothing
 * @param height  rows; below 1 sums nothing
 * @return the sum, modulo 2^32; 0 when nothing is summed
 */
PQX_API uint32_t pqx_Video_SumAbsDiff_8U(const uint8_t* pSrc1, const uint8_t* pSrc2, int step, int width, int height);

/** @} */

/**
 * @defgroup dct Transforms
 * Orthonormal two-dimensional discrete cosine transforms.
 *
 * A coefficient block is 64 values in natural row-major order: element 8*u + v has vertical frequency u and
 * horizontal frequency v, element 0 is the DC. With C(0) = 1/sqrt(2) and C(k) = 1 for k > 0, the forward transform
 * of samples f is
 *
 *     F(u, v) = 1/4 C(u) C(v) sum over y, x of f(y, x) cos((2y+1) u pi/16) cos((2x+1) v pi/16)
 *
 * so that the DC is the sum of the samples divided by 8. This is the transform of JPEG, H.261, H.263 and MPEG.
 * Pixels enter as 0..255, without a level shift. Every operation reads all of its input before it writes.
 * @{
 */

/**
 * Forward 8x8 transform of signed samples.
 *
 * The arithmetic is mixed-precision: sums and differences of samples or of row results in single precision, products
 * with a constant and the sums of two such products in double, rounded to single precision. A result above -4096.5
 * is rounded to the nearest integer, exact halves of the single-precision value upward; a lower one is z ->
 * trunc(z + 4096.5) - 4096, kept modulo 2^16. Nothing saturates.
 *
 * @param pSrc  samples, row-major. Reads `128 bytes`.
 * @param pDst  coefficients. Writes `128 bytes`. May overlap `pSrc`.
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_DCT8x8Fwd_16S(const int16_t* pSrc, int16_t* pDst);

/**
 * Forward 8x8 transform of samples of up to 12 bits: the same as pqx_Video_DCT8x8Fwd_16S(), which it calls.
 *
 * @param pSrc  samples, row-major. Reads `128 bytes`.
 * @param pDst  coefficients. Writes `128 bytes`. May overlap `pSrc`.
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_DCT8x8Fwd_12S_16S(const int16_t* pSrc, int16_t* pDst);

/**
 * Forward 8x8 transform of pixels, with the arithmetic of pqx_Video_DCT8x8Fwd_16S(). The DC lies in 0..2040.
 *
 * @param pSrc     pixels, 0..255. Reads `8 rows of 8 bytes, srcStep apart`.
 * @param srcStep  bytes from row to row of pSrc, of either sign
 * @param pDst     coefficients. Writes `128 bytes`.
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_DCT8x8Fwd_8U_16S(const uint8_t* pSrc, int srcStep, int16_t* pDst);

/**
 * Inverse 8x8 transform to signed samples, with the results of double precision.
 *
 * Above -2048.5 a result is rounded to the nearest integer, halves upward, of a transform whose DC gain is
 * 0.99999999664: an exact half that comes from the DC alone falls just below (a lone DC of 4 gives 0, of 12
 * gives 1). Below -2048.5 it is truncated toward zero, and values wrap modulo 2^16; nothing saturates.
 *
 * @param pSrc  coefficients. Reads `128 bytes`.
 * @param pDst  samples, row-major. Writes `128 bytes`. May overlap `pSrc`.
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_DCT8x8Inv_16S(const int16_t* pSrc, int16_t* pDst);

/**
 * Inverse 8x8 transform to pixels: rounded to the nearest integer and saturated to 0..255. A lone DC on an exact
 * half (4, 12, ...) rounds upward up to 1020 and downward from 1028.
 *
 * @param pSrc     coefficients. Reads `128 bytes`.
 * @param pDst     pixels. Writes `8 rows of 8 bytes, dstStep apart`.
 * @param dstStep  bytes from row to row of pDst, of either sign
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_DCT8x8Inv_16S_8U(const int16_t* pSrc, uint8_t* pDst, int dstStep);

/**
 * Inverse 8x8 transform of the top-left quarter of a block: pqx_Video_DCT8x8Inv_16S() with every coefficient of
 * u > 3 or v > 3 taken as zero, bit for bit. Only the 16 coefficients with u < 4 and v < 4 are read.
 *
 * @param pSrc  block of coefficients. Reads `4 rows of 8 bytes, 16 apart`.
 * @param pDst  samples, row-major. Writes `128 bytes`. May overlap `pSrc`.
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_DCT8x8Inv_1Q_16S(const int16_t* pSrc, int16_t* pDst);

/**
 * Inverse 8x8 transform of the top-left quarter of a block to pixels: pqx_Video_DCT8x8Inv_16S_8U() with every
 * coefficient of u > 3 or v > 3 taken as zero, bit for bit.
 *
 * @param pSrc     block of coefficients. Reads `4 rows of 8 bytes, 16 apart`.
 * @param pDst     pixels. Writes `8 rows of 8 bytes, dstStep apart`.
 * @param dstStep  bytes from row to row of pDst, of either sign
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_DCT8x8Inv_1Q_16S_8U(const int16_t* pSrc, uint8_t* pDst, int dstStep);

/**
 * Inverse 8x8 transform of a DC alone: all samples are (DC + 4) >> 3.
 *
 * Differs from pqx_Video_DCT8x8Inv_16S() on exact halves (a DC of 4 gives 1, not 0) and for every DC below -16388,
 * where that form rounds toward zero.
 *
 * @param pSrc  block of coefficients, or its DC alone. Reads `2 bytes`.
 * @param pDst  samples. Writes `128 bytes`. May overlap `pSrc`.
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_DCT8x8Inv_DC_16S(const int16_t* pSrc, int16_t* pDst);

/**
 * Inverse 8x8 transform of a DC alone to pixels: all pixels are (DC + 4) >> 3, saturated to 0..255.
 *
 * Differs from pqx_Video_DCT8x8Inv_16S_8U() for the 127 DCs 1028, 1036, ..., 2036, which are exact halves that the
 * full form rounds down. The bright blocks of JPEG lie there: a decoder that mixes both forms depends on the choice.
 *
 * @param pSrc     block of coefficients, or its DC alone. Reads `2 bytes`.
 * @param pDst     pixels. Writes `8 rows of 8 bytes, dstStep apart`.
 * @param dstStep  bytes from row to row of pDst, of either sign
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_DCT8x8Inv_DC_16S_8U(const int16_t* pSrc, uint8_t* pDst, int dstStep);

/**
 * Inverse 8x8 transform in integer arithmetic: rows, then columns, by the Chen-Wang factorization with constants
 * 2048 sqrt(2) cos(k pi/16). Meets IEEE 1180-1990. A lone DC of -4096..4095 gives (8 DC + 32) >> 6; the row result
 * of any other wraps.
 *
 * Row results are kept to their low 16 bits, all sums wrap, results are not clipped; coefficients in -2048..2047
 * of blocks from 9-bit samples never get there.
 *
 * @param pSrc  coefficients. Reads `128 bytes`.
 * @param pDst  samples, row-major. Writes `128 bytes`. May overlap `pSrc`.
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_DCT8x8Inv_IEEE_16S(const int16_t* pSrc, int16_t* pDst);

/**
 * Inverse 8x8 transform of the top-left quarter of a block and of coefficient 63, for blocks whose mismatch
 * control (as in MPEG-2) touched that coefficient: pqx_Video_DCT8x8Inv_1Q_16S() with one more input.
 *
 * @param pSrc  block of coefficients. Reads `4 rows of 8 bytes, 16 apart and 2 bytes, from 126`.
 * @param pDst  samples, row-major. Writes `128 bytes`. May overlap `pSrc`.
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_DCT8x8Inv_1Q_Mismatch_16S(const int16_t* pSrc, int16_t* pDst);

/**
 * Forward 2x2 transform: with the samples a, b / c, d it gives (a + b + c + d) >> 1, (a - b + c - d) >> 1,
 * (a + b - c - d) >> 1 and (a - b - c + d) >> 1.
 *
 * @param pSrc  samples, row-major. Reads `8 bytes`.
 * @param pDst  coefficients. Writes `8 bytes`. May overlap `pSrc`.
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_DCT2x2Fwd_16S(const int16_t* pSrc, int16_t* pDst);

/**
 * Forward 4x4 transform of signed samples, in single precision at four times the orthonormal scale. A result z
 * becomes trunc(z) >> 2: rounded toward zero, then downward (an exact -0.5 gives -1, +0.5 gives 0).
 *
 * @param pSrc  samples, row-major. Reads `32 bytes`.
 * @param pDst  coefficients, element 4*u + v. Writes `32 bytes`. May overlap `pSrc`.
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_DCT4x4Fwd_16S(const int16_t* pSrc, int16_t* pDst);

/**
 * Forward 16x16 transform of signed samples, in single precision. Results are truncated toward zero, not rounded;
 * only where the exact result lies within single-precision rounding of an integer can that integer's neighbour
 * come out.
 *
 * @param pSrc  samples, row-major. Reads `512 bytes`.
 * @param pDst  coefficients, element 16*u + v. Writes `512 bytes`. May overlap `pSrc`.
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_DCT16x16Fwd_16S(const int16_t* pSrc, int16_t* pDst);

/**
 * Forward 16x16 transform of samples of up to 10 bits: the same as pqx_Video_DCT16x16Fwd_16S(), which it calls.
 *
 * @param pSrc  samples, row-major. Reads `512 bytes`.
 * @param pDst  coefficients. Writes `512 bytes`. May overlap `pSrc`.
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_DCT16x16Fwd_10S_16S(const int16_t* pSrc, int16_t* pDst);

/** @} */

/**
 * @defgroup quant Quantization
 * Division and multiplication of 8x8 coefficient blocks by a matrix of step sizes.
 *
 * Element i of a matrix and of a state belongs to element i of the block; no scan order is imposed. A state holds
 * nothing but its 64 numbers: it may be copied, kept anywhere and shared by threads.
 * @{
 */

/**
 * Makes the state of pqx_Video_Quantize_16S_I(): pState[i] = 1.0f / pQMatrix[i].
 *
 * @param pQMatrix  step sizes; 0 gives infinity. Reads `128 bytes`.
 * @param pState    reciprocals. Writes `256 bytes`.
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_QuantizeInit_16S(const int16_t* pQMatrix, float* pState);

/**
 * Quantizes a block in place: the product of coefficient and reciprocal, rounded to the nearest integer, halves
 * upward (with a step of 2, 5 gives 3 and -5 gives -2).
 *
 * In single precision, each operation rounded: s = c * pState[i] + 32768.5; the result is trunc(s) - 32768 modulo
 * 2^16. Fractions finer than 1/256 are thus rounded first. Where s is not a number or does not fit 32 bits, as
 * with a step of 0, the result is -32768.
 *
 * @param pState   reciprocals, from pqx_Video_QuantizeInit_16S() or of the caller's making. May read `256 bytes`.
 * @param pSrcDst  coefficients, replaced by their levels. Reads and writes `128 bytes`.
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_Quantize_16S_I(const float* pState, int16_t* pSrcDst);

/**
 * Makes the state of pqx_Video_DeQuantize_16S_I(): pState[i] = pQMatrix[i].
 *
 * @param pQMatrix  step sizes. Reads `128 bytes`.
 * @param pState    doubles. Writes `512 bytes`.
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_DeQuantizeInit_16S(const int16_t* pQMatrix, double* pState);

/**
 * Dequantizes a block in place: the product of level and step, truncated toward zero and kept modulo 2^16. With a
 * state from pqx_Video_DeQuantizeInit_16S() the product is exact. A product that is not a number or does not fit
 * 32 bits gives 0.
 *
 * @param pState   steps, from pqx_Video_DeQuantizeInit_16S() or of the caller's making. May read `512 bytes`.
 * @param pSrcDst  levels, replaced by their coefficients. Reads and writes `128 bytes`.
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_DeQuantize_16S_I(const double* pState, int16_t* pSrcDst);

/** @} */

/**
 * @defgroup filter Loop filtering
 * The loop filter of H.261 and reduction by two.
 * @{
 */

/**
 * Applies the H.261 loop filter to an 8x8 block.
 *
 * The filter weighs 1, 2, 1 (over 4) in rows and in columns; the outer columns are not filtered horizontally, the
 * outer rows not vertically. Sums are kept exact and rounded once, halves upward: (v + 8) >> 4 inside, (v + 2) >>
 * 2 along the edges. Corners stay as they are.
 *
 * @param pSrc  samples. Reads `8 rows of 8 bytes, step apart`.
 * @param pDst  samples. Writes `8 rows of 8 bytes, step apart`. May equal `pSrc`.
 * @param step  bytes from row to row of both
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_P64Loop_8U(const uint8_t* pSrc, uint8_t* pDst, int step);

/**
 * Applies the H.261 loop filter to an 8x8 block, as pqx_Video_P64Loop_8U(), into 16-bit elements.
 *
 * @param pSrc     samples. Reads `8 rows of 8 bytes, srcStep apart`.
 * @param srcStep  bytes from row to row of pSrc
 * @param pDst     block, row-major, 0..255. Writes `128 bytes`.
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_P64Loop_8U_16S(const uint8_t* pSrc, int srcStep, int16_t* pDst);

/**
 * Halves a picture in both directions: each destination sample is (a + b + c + d + 2) >> 2 of a square of four.
 *
 * @param pSrc     samples of the larger picture. Reads `2 * height rows of 2 * width bytes, srcStep apart`.
 * @param srcStep  bytes from row to row of pSrc
 * @param pDst     samples of the smaller picture; where it overlaps the source, samples are taken one after the
 *                 other, row after row. Writes `height rows of width bytes, dstStep apart`. May overlap `pSrc`.
 * @param dstStep  bytes from row to row of pDst
 * @param width    columns of the destination; below 1 does nothing
 * @param height   rows of the destination; below 1 does nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_P64Decimate_8U(const uint8_t* pSrc, int srcStep, uint8_t* pDst, int dstStep, int width,
                                            int height);

/** @} */

/**
 * @defgroup resample Chroma resampling
 * Row by row between full (4:4:4), halved (4:2:2) and quartered (4:2:0) chroma. The rounding terms alternate along
 * a row, so that rounding leaves no bias in one direction.
 * @{
 */

/**
 * Quarters a pair of chroma rows a and b by averaging squares of four, 4:4:4 to 4:2:0.
 *
 *     out[k] = (a[2k] + a[2k+1] + b[2k] + b[2k+1] + (k odd ? 2 : 1)) >> 2
 *
 * With `n = len < 1 ? 0 : len / 4 * 2 + (len % 4 > 0)`:
 *
 * @param pSrc0  row a. Reads `2 * n bytes`.
 * @param pSrc1  row b. Reads `2 * n bytes`.
 * @param len    samples in a source row, normally even; 0 or less writes nothing. If len % 4 is 1, one sample past
 *               each row is read; if it is 3, the last sample is ignored.
 * @param pDst   averages; where it overlaps a source row, samples are taken one after the other. Writes `n bytes`.
 *               May overlap `pSrc0` or `pSrc1`.
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_DownSample420_BL_8U(const uint8_t* pSrc0, const uint8_t* pSrc1, int len, uint8_t* pDst);

/**
 * Quarters a pair of signed 16-bit chroma rows by averaging squares of four, 4:4:4 to 4:2:0, by the formula of
 * pqx_Video_DownSample420_BL_8U().
 *
 * With `n = len < 1 ? 0 : len / 4 * 2 + (len % 4 > 0)`:
 *
 * @param pSrc0  upper row. Reads `4 * n bytes`.
 * @param pSrc1  lower row. Reads `4 * n bytes`.
 * @param len    samples in a source row, normally even; 0 or less writes nothing. If len % 4 is 1, one sample past
 *               each row is read; if it is 3, the last sample is ignored.
 * @param pDst   averages; where it overlaps a source row, samples are taken one after the other. Writes
 *               `2 * n bytes`. May overlap `pSrc0` or `pSrc1`.
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_DownSample420_BL_16S(const int16_t* pSrc0, const int16_t* pSrc1, int len, int16_t* pDst);

/**
 * Halves a chroma row s by averaging pairs, 4:4:4 to 4:2:2.
 *
 *     out[k] = (s[2k] + s[2k+1] + (k odd ? 1 : 0)) >> 1
 *
 * With `n = len < 1 ? 0 : len / 4 * 2 + (len % 4 > 0)`:
 *
 * @param pSrc  row s. Reads `2 * n bytes`.
 * @param len   source samples, normally even; 0 or less writes nothing. If len % 4 is 1, one sample past the row is
 *              read; if it is 3, the last sample is ignored.
 * @param pDst  averages; where it overlaps pSrc, samples are taken one after the other. Writes `n bytes`. May overlap
 *              `pSrc`.
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_DownSample422_BL_8U(const uint8_t* pSrc, int len, uint8_t* pDst);

/**
 * Halves a signed 16-bit chroma row by averaging pairs, 4:4:4 to 4:2:2, by the formula of
 * pqx_Video_DownSample422_BL_8U().
 *
 * With `n = len < 1 ? 0 : len / 4 * 2 + (len % 4 > 0)`:
 *
 * @param pSrc  chroma row. Reads `4 * n bytes`.
 * @param len   source samples, normally even; 0 or less writes nothing. If len % 4 is 1, one sample past the row is
 *              read; if it is 3, the last sample is ignored.
 * @param pDst  averages; where it overlaps pSrc, samples are taken one after the other. Writes `2 * n bytes`. May
 *              overlap `pSrc`.
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_DownSample422_BL_16S(const int16_t* pSrc, int len, int16_t* pDst);

/**
 * Repeats every chroma sample in a square of four, 4:2:0 to 4:4:4: both rows receive s[0], s[0], s[1], s[1], ...
 *
 * With `n = len < 0 ? len & 1 : len`:
 *
 * @param pSrc   chroma row. Reads `n bytes`.
 * @param len    source samples; 0 writes nothing, and so does a negative even value. A negative odd value is taken as
 *               1.
 * @param pDst0  upper row; where it overlaps pSrc, samples are taken one after the other. Writes `2 * n bytes`. May
 *               overlap `pSrc`.
 * @param pDst1  lower row, likewise. Writes `2 * n bytes`. May overlap `pSrc`.
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_UpSample420_NN_8U(const uint8_t* pSrc, int len, uint8_t* pDst0, uint8_t* pDst1);

/**
 * Repeats every signed 16-bit chroma sample in a square of four, 4:2:0 to 4:4:4.
 *
 * @param pSrc   chroma row. Reads `2 * len bytes`.
 * @param len    source samples; 0 or less writes nothing
 * @param pDst0  upper row; where it overlaps pSrc, samples are taken one after the other. Writes `4 * len bytes`. May
 *               overlap `pSrc`.
 * @param pDst1  lower row, likewise. Writes `4 * len bytes`. May overlap `pSrc`.
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_UpSample420_NN_16S(const int16_t* pSrc, int len, int16_t* pDst0, int16_t* pDst1);

/**
 * Interpolates chroma bilinearly in both directions, 4:2:0 to 4:4:4: the nearest source sample weighs 9/16, its
 * neighbours in row and column 3/16, the diagonal one 1/16.
 *
 * With `n = max(len, 2)`, u[j] = prev[j] + 3 cur[j], and u[-1] = u[0], u[n] = u[n-1] at the ends, the upper row is
 *
 *     out[2j]   = (u[j-1] + 3 u[j] + 8) >> 4
 *     out[2j+1] = (3 u[j] + u[j+1] + 7) >> 4
 *
 * and the lower row the same with next in the place of prev.
 *
 * @param pSrcPrev  chroma row above; the caller repeats pSrcCur at the top of a picture. Reads `n bytes`.
 * @param pSrcCur   chroma row of the two luma rows. Reads `n bytes`.
 * @param pSrcNext  chroma row below; the caller repeats pSrcCur at the bottom of a picture. Reads `n bytes`.
 * @param len       samples in a source row; any value below 3 is taken as 2: two samples of each row are read and
 *                  four written to each destination
 * @param pDst0     upper row. Writes `2 * n bytes`.
 * @param pDst1     lower row. Writes `2 * n bytes`.
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_UpSample420_BL_8U(const uint8_t* pSrcPrev, const uint8_t* pSrcCur,
                                               const uint8_t* pSrcNext, int len, uint8_t* pDst0, uint8_t* pDst1);

/**
 * Interpolates signed 16-bit chroma bilinearly in both directions, 4:2:0 to 4:4:4, by the formula of
 * pqx_Video_UpSample420_BL_8U().
 *
 * With `n = max(len, 2)`:
 *
 * @param pSrcPrev  chroma row above. Reads `2 * n bytes`.
 * @param pSrcCur   chroma row of the two luma rows. Reads `2 * n bytes`.
 * @param pSrcNext  chroma row below. Reads `2 * n bytes`.
 * @param len       samples in a source row; any value below 3 is taken as 2
 * @param pDst0     upper row. Writes `4 * n bytes`.
 * @param pDst1     lower row. Writes `4 * n bytes`.
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_UpSample420_BL_16S(const int16_t* pSrcPrev, const int16_t* pSrcCur,
                                                const int16_t* pSrcNext, int len, int16_t* pDst0, int16_t* pDst1);

/**
 * Repeats every chroma sample twice, 4:2:2 to 4:4:4.
 *
 * With `n = len < 0 ? len & 1 : len`:
 *
 * @param pSrc  chroma row. Reads `n bytes`.
 * @param len   source samples; 0 writes nothing, and so does a negative even value. A negative odd value is taken as
 *              1.
 * @param pDst  row of twice the samples; where it overlaps pSrc, samples are taken one after the other. Writes
 *              `2 * n bytes`. May overlap `pSrc`.
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_UpSample422_NN_8U(const uint8_t* pSrc, int len, uint8_t* pDst);

/**
 * Repeats every signed 16-bit chroma sample twice, 4:2:2 to 4:4:4.
 *
 * @param pSrc  chroma row. Reads `2 * len bytes`.
 * @param len   source samples; 0 or less writes nothing
 * @param pDst  row of twice the samples; where it overlaps pSrc, samples are taken one after the other. Writes
 *              `4 * len bytes`. May overlap `pSrc`.
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_UpSample422_NN_16S(const int16_t* pSrc, int len, int16_t* pDst);

/**
 * Interpolates a chroma row s linearly, 4:2:2 to 4:4:4. With `n = max(len, 2)`:
 *
 *     out[2j]   = (3 s[j] + s[j-1] + 1) >> 2, but out[0] = s[0]
 *     out[2j+1] = (3 s[j] + s[j+1] + 2) >> 2, but out[2n-1] = s[n-1]
 *
 * @param pSrc  row s. Reads `n bytes`.
 * @param len   source samples; any value below 3 is taken as 2: two samples are read and four written
 * @param pDst  row of twice the samples; where it overlaps pSrc, outputs are made one after the other. Writes
 *              `2 * n bytes`. May overlap `pSrc`.
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_UpSample422_BL_8U(const uint8_t* pSrc, int len, uint8_t* pDst);

/**
 * Interpolates a signed 16-bit chroma row linearly, 4:2:2 to 4:4:4, by the formula of
 * pqx_Video_UpSample422_BL_8U().
 *
 * With `n = max(len, 2)`:
 *
 * @param pSrc  chroma row. Reads `2 * n bytes`.
 * @param len   source samples; any value below 3 is taken as 2
 * @param pDst  row of twice the samples; where it overlaps pSrc, outputs are made one after the other. Writes
 *              `4 * n bytes`. May overlap `pSrc`.
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_UpSample422_BL_16S(const int16_t* pSrc, int len, int16_t* pDst);

/** @} */

/**
 * @defgroup color Color conversion
 * Fixed-point conversions, one row (or one pair of rows) of pixels at a time.
 *
 * YCC is full-range Y, Cb, Cr as in JPEG (0..255, chroma centred on 128). YUV is studio range as in ITU-R BT.601
 * (Y 16..235, chroma centred on 128). Every product with a matrix coefficient is rounded on its own, by the tables
 * below, and that rounding is part of the result.
 * @{
 */

/**
 * @defgroup color_tables Tables
 * The rounded products that the conversions are made of.
 *
 * Each entry is round(A + c x) for the index x = 0..255 (round(v) = floor(v + 0.5); no entry falls on a half).
 *
 * Tables in half units hold twice the 8-bit scale; a sum s of them becomes the byte clamp(s >> 1, 0, 255):
 *
 *     YUV red   = YY[Y] + RV[V] - 446            YCC red   = 2 Y + RCr[Cr] - 359
 *     YUV green = YY[Y] + GU[U] - GV[V]          YCC green = 2 Y + GCb[Cb] - GCr[Cr]
 *     YUV blue  = YY[Y] + BU[U] - 554            YCC blue  = 2 Y + BCb[Cb] - 454
 * @{
 */
extern PQX_API const int16_t pqx_tYY[256];  /**< By Y, half units: 2.328767 x. */
extern PQX_API const int16_t pqx_tRV[256];  /**< By V, half units: 0.006 + 3.193182 x. */
extern PQX_API const int16_t pqx_tGV[256];  /**< By V, half units: 1.626374 x. */
extern PQX_API const int16_t pqx_tGU[256];  /**< By U, half units: 271.272 - 0.784 x. */
extern PQX_API const int16_t pqx_tBU[256];  /**< By U, half units: 4.03681 x. */
extern PQX_API const int16_t pqx_tRCr[256]; /**< By Cr, half units: -0.01 + 2.804054 x. */
extern PQX_API const int16_t pqx_tGCr[256]; /**< By Cr, half units: 0.07 + 1.428 x. */
extern PQX_API const int16_t pqx_tGCb[256]; /**< By Cb, half units: 270.922 - 0.688312 x. */
extern PQX_API const int16_t pqx_tBCb[256]; /**< By Cb, half units: 3.544 x. */

/** Clip of a half-unit sum s in -576..1087: pqx_tClip[576 + s] = clamp(s >> 1, 0, 255). */
extern PQX_API const uint8_t pqx_tClip[1664];

/**
 * RGB to YCC by R: the sum of the three words of a pixel holds Y in bits 0..7, Cb in 10..17, Cr in 21..28. Fields:
 * Y = 0.298969 x in bits 0..9, Cb = 0.003 - 0.16875 x in bits 10..18 and Cr = -0.25 + 0.5 x in bits 21..29, the
 * chroma fields modulo 512; the other bits are zero.
 */
extern PQX_API const uint32_t pqx_t_r2j[256];
/** RGB to YCC by G: Y = 0.011 + 0.586957 x, Cb = 128.006 - 0.331288 x, Cr = 128.009 - 0.41875 x. */
extern PQX_API const uint32_t pqx_t_g2j[256];
/** RGB to YCC by B: Y = 0.11399 x, Cb = -0.25 + 0.5 x, Cr = -0.081301 x. */
extern PQX_API const uint32_t pqx_t_b2j[256];

/**
 * YUV 4:4:4 to RGB by Y: a word is R + (G << 10) + (B << 20); the sum of the three words of a pixel holds R + 256
 * in bits 0..9, G + 256 in bits 10..19 and B, signed, in bits 20..31. R = 32.997 + 1.164474 x, G = B = 1.164384 x.
 */
extern PQX_API const int32_t pqx_t_Yuv2rgb[256];
/** YUV 4:4:4 to RGB by U: R = 0, G = 135.632 - 0.392 x, B = -276.988 + 2.018405 x. */
extern PQX_API const int32_t pqx_t_yUv2rgb[256];
/** YUV 4:4:4 to RGB by V: R = 0.003 + 1.596591 x, G = 256 - 0.813187 x, B = 0. */
extern PQX_API const int32_t pqx_t_yuV2rgb[256];

/** Clip of the biased fields of the 4:4:4 tables: pqx_video_pClipOff256[i] = clamp(i - 256, 0, 255). */
extern PQX_API const uint8_t pqx_video_pClipOff256[800];
/** @} */

/**
 * @defgroup color_rgb_to_ycc RGB to YCC
 * Full-range Y, Cb and Cr of RGB, ARGB, ABGR, BGRA and CMYK pixels, with chroma of full, half or quarter resolution.
 * @{
 */

/**
 * Converts a row of RGB pixels to YCC 4:4:4, full range.
 *
 * With the word w = pqx_t_r2j[R] + pqx_t_g2j[G] + pqx_t_b2j[B] of a pixel:
 *
 *     Y = w & 255, Cb = (w >> 10) & 255, Cr = (w >> 21) & 255
 *
 * This is the JPEG matrix with each of the nine products rounded on its own: grey is not always exact (R = G = B =
 * 4 gives Y 3). No result needs a clamp.
 *
 * @param pSrc  pixels of 3 bytes R, G, B. Reads `3 * len bytes`.
 * @param pY    Y samples, 0..255. Writes `len bytes`.
 * @param pCb   Cb samples. Writes `len bytes`.
 * @param pCr   Cr samples. Writes `len bytes`.
 * @param len   pixels; 0 or less writes nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorRGB2YCC444_8U(const uint8_t* pSrc, uint8_t* pY, uint8_t* pCb, uint8_t* pCr,
                                                int len);

/**
 * Converts a row of ABGR pixels to YCC 4:4:4, as pqx_Video_ColorRGB2YCC444_8U() does RGB.
 *
 * @param pSrc  pixels of 4 bytes A, B, G, R; A is ignored. May read `4 * len bytes`.
 * @param pY    Y samples, 0..255. Writes `len bytes`.
 * @param pCb   Cb samples. Writes `len bytes`.
 * @param pCr   Cr samples. Writes `len bytes`.
 * @param len   pixels; 0 or less writes nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorABGR2YCC444_8U(const uint8_t* pSrc, uint8_t* pY, uint8_t* pCb, uint8_t* pCr,
                                                 int len);

/**
 * Converts a row of ARGB pixels to YCC 4:4:4, as pqx_Video_ColorRGB2YCC444_8U() does RGB.
 *
 * @param pSrc  pixels of 4 bytes A, R, G, B; A is ignored. May read `4 * len bytes`.
 * @param pY    Y samples, 0..255. Writes `len bytes`.
 * @param pCb   Cb samples. Writes `len bytes`.
 * @param pCr   Cr samples. Writes `len bytes`.
 * @param len   pixels; 0 or less writes nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorARGB2YCC444_8U(const uint8_t* pSrc, uint8_t* pY, uint8_t* pCb, uint8_t* pCr,
                                                 int len);

/**
 * Converts a row of BGRA pixels to YCC 4:4:4, as pqx_Video_ColorRGB2YCC444_8U() does RGB.
 *
 * @param pSrc  pixels of 4 bytes B, G, R, A; A is ignored. May read `4 * len bytes`.
 * @param pY    Y samples, 0..255. Writes `len bytes`.
 * @param pCb   Cb samples. Writes `len bytes`.
 * @param pCr   Cr samples. Writes `len bytes`.
 * @param len   pixels; 0 or less writes nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorBGRA2YCC444_8U(const uint8_t* pSrc, uint8_t* pY, uint8_t* pCb, uint8_t* pCr,
                                                 int len);

/**
 * Converts a row of RGB pixels to YCC 4:2:2: chroma is converted per pixel, then averaged in pairs.
 *
 *     Cb[j] = (Cb(2j) + Cb(2j+1) + r) >> 1, r = j & 1; Cr alike
 *
 * where Y, Cb and Cr of a pixel are those of pqx_Video_ColorRGB2YCC444_8U(). A pair behind the last whole group of
 * four pixels has an even j, hence r = 0.
 *
 * With `n = len / 2`:
 *
 * @param pSrc  pixels of 3 bytes R, G, B; an odd last one is not read. Reads `6 * n bytes`.
 * @param pY    Y samples; with an odd len the last one is not written. Writes `2 * n bytes`.
 * @param pCb   Cb samples. Writes `n bytes`.
 * @param pCr   Cr samples. Writes `n bytes`.
 * @param len   pixels; below 2 writes nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorRGB2YCC422_BL_8U(const uint8_t* pSrc, uint8_t* pY, uint8_t* pCb, uint8_t* pCr,
                                                   int len);

/**
 * Converts a row of ABGR pixels to YCC 4:2:2, as pqx_Video_ColorRGB2YCC422_BL_8U() does RGB.
 *
 * With `n = len / 2`:
 *
 * @param pSrc  pixels of 4 bytes A, B, G, R; A is ignored; an odd last one is not read. May read `8 * n bytes`.
 * @param pY    Y samples; with an odd len the last one is not written. Writes `2 * n bytes`.
 * @param pCb   Cb samples. Writes `n bytes`.
 * @param pCr   Cr samples. Writes `n bytes`.
 * @param len   pixels; below 2 writes nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorABGR2YCC422_BL_8U(const uint8_t* pSrc, uint8_t* pY, uint8_t* pCb, uint8_t* pCr,
                                                    int len);

/**
 * Converts a row of ARGB pixels to YCC 4:2:2, as pqx_Video_ColorRGB2YCC422_BL_8U() does RGB.
 *
 * With `n = len / 2`:
 *
 * @param pSrc  pixels of 4 bytes A, R, G, B; A is ignored; an odd last one is not read. May read `8 * n bytes`.
 * @param pY    Y samples; with an odd len the last one is not written. Writes `2 * n bytes`.
 * @param pCb   Cb samples. Writes `n bytes`.
 * @param pCr   Cr samples. Writes `n bytes`.
 * @param len   pixels; below 2 writes nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorARGB2YCC422_BL_8U(const uint8_t* pSrc, uint8_t* pY, uint8_t* pCb, uint8_t* pCr,
                                                    int len);

/**
 * Converts a row of BGRA pixels to YCC 4:2:2, as pqx_Video_ColorRGB2YCC422_BL_8U() does RGB.
 *
 * With `n = len / 2`:
 *
 * @param pSrc  pixels of 4 bytes B, G, R, A; A is ignored; an odd last one is not read. May read `8 * n bytes`.
 * @param pY    Y samples; with an odd len the last one is not written. Writes `2 * n bytes`.
 * @param pCb   Cb samples. Writes `n bytes`.
 * @param pCr   Cr samples. Writes `n bytes`.
 * @param len   pixels; below 2 writes nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorBGRA2YCC422_BL_8U(const uint8_t* pSrc, uint8_t* pY, uint8_t* pCb, uint8_t* pCr,
                                                    int len);

/**
 * Converts a pair of rows of RGB pixels to YCC 4:2:0: chroma is converted per pixel, then averaged over squares of
 * four.
 *
 *     Cb[j] = (sum of the four Cb + r) >> 2, r = j odd ? 2 : 0; Cr alike
 *
 * where Y, Cb and Cr of a pixel are those of pqx_Video_ColorRGB2YCC444_8U().
 *
 * With `n = len / 2`:
 *
 * @param pSrc0  upper row: pixels of 3 bytes R, G, B; an odd last one is not read. Reads `6 * n bytes`.
 * @param pSrc1  lower row, likewise. Reads `6 * n bytes`.
 * @param pY0    upper row: Y samples. Writes `2 * n bytes`.
 * @param pY1    lower row: Y samples. Writes `2 * n bytes`.
 * @param pCb    Cb samples. Writes `n bytes`.
 * @param pCr    Cr samples. Writes `n bytes`.
 * @param len    pixels in a row; below 2 writes nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorRGB2YCC420_BL_8U(const uint8_t* pSrc0, const uint8_t* pSrc1, uint8_t* pY0,
                                                   uint8_t* pY1, uint8_t* pCb, uint8_t* pCr, int len);

/**
 * Converts a pair of rows of ABGR pixels to YCC 4:2:0, as pqx_Video_ColorRGB2YCC420_BL_8U() does RGB.
 *
 * With `n = len / 2`:
 *
 * @param pSrc0  upper row: pixels of 4 bytes A, B, G, R; A is ignored; an odd last one is not read. May read
 *               `8 * n bytes`.
 * @param pSrc1  lower row, likewise. May read `8 * n bytes`.
 * @param pY0    upper row: Y samples. Writes `2 * n bytes`.
 * @param pY1    lower row: Y samples. Writes `2 * n bytes`.
 * @param pCb    Cb samples. Writes `n bytes`.
 * @param pCr    Cr samples. Writes `n bytes`.
 * @param len    pixels in a row; below 2 writes nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorABGR2YCC420_BL_8U(const uint8_t* pSrc0, const uint8_t* pSrc1, uint8_t* pY0,
                                                    uint8_t* pY1, uint8_t* pCb, uint8_t* pCr, int len);

/**
 * Converts a pair of rows of ARGB pixels to YCC 4:2:0, as pqx_Video_ColorRGB2YCC420_BL_8U() does RGB.
 *
 * With `n = len / 2`:
 *
 * @param pSrc0  upper row: pixels of 4 bytes A, R, G, B; A is ignored; an odd last one is not read. May read
 *               `8 * n bytes`.
 * @param pSrc1  lower row, likewise. May read `8 * n bytes`.
 * @param pY0    upper row: Y samples. Writes `2 * n bytes`.
 * @param pY1    lower row: Y samples. Writes `2 * n bytes`.
 * @param pCb    Cb samples. Writes `n bytes`.
 * @param pCr    Cr samples. Writes `n bytes`.
 * @param len    pixels in a row; below 2 writes nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorARGB2YCC420_BL_8U(const uint8_t* pSrc0, const uint8_t* pSrc1, uint8_t* pY0,
                                                    uint8_t* pY1, uint8_t* pCb, uint8_t* pCr, int len);

/**
 * Converts a pair of rows of BGRA pixels to YCC 4:2:0, as pqx_Video_ColorRGB2YCC420_BL_8U() does RGB.
 *
 * With `n = len / 2`:
 *
 * @param pSrc0  upper row: pixels of 4 bytes B, G, R, A; A is ignored; an odd last one is not read. May read
 *               `8 * n bytes`.
 * @param pSrc1  lower row, likewise. May read `8 * n bytes`.
 * @param pY0    upper row: Y samples. Writes `2 * n bytes`.
 * @param pY1    lower row: Y samples. Writes `2 * n bytes`.
 * @param pCb    Cb samples. Writes `n bytes`.
 * @param pCr    Cr samples. Writes `n bytes`.
 * @param len    pixels in a row; below 2 writes nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorBGRA2YCC420_BL_8U(const uint8_t* pSrc0, const uint8_t* pSrc1, uint8_t* pY0,
                                                    uint8_t* pY1, uint8_t* pCb, uint8_t* pCr, int len);

/**
 * Converts a row of CMYK pixels to YCCK 4:4:4: R = 255 - C, G = 255 - M, B = 255 - Y (byte 2) as in
 * pqx_Video_ColorRGB2YCC444_8U(), K copied.
 *
 * @param pSrc  pixels of 4 bytes C, M, Y, K. Reads `4 * len bytes`.
 * @param pY    Y samples. Writes `len bytes`.
 * @param pCb   Cb samples. Writes `len bytes`.
 * @param pCr   Cr samples. Writes `len bytes`.
 * @param pK    K samples. Writes `len bytes`.
 * @param len   pixels; 0 or less writes nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorCMYK2YCCK444_8U(const uint8_t* pSrc, uint8_t* pY, uint8_t* pCb, uint8_t* pCr,
                                                  uint8_t* pK, int len);

/**
 * Converts a row of 12-bit RGB pixels to YCC 4:4:4, chroma centred on 2048, in single precision from left to
 * right:
 *
 *     Y  = R * 0.299 + G * 0.587 + B * 0.114
 *     Cb = R * (-0.16874) - G * 0.33126 + B * 0.5 + 2048
 *     Cr = R * 0.5 - G * 0.41869 - B * 0.08131 + 2048
 *
 * Each result is truncated toward zero to 32 bits, of which the low 16 are stored.
 *
 * With `n = max(len, 1)`:
 *
 * @param pSrc  pixels of 3 samples R, G, B, normally 0..4095. Reads `6 * n bytes`.
 * @param pY    Y samples. Writes `2 * n bytes`.
 * @param pCb   Cb samples. Writes `2 * n bytes`.
 * @param pCr   Cr samples. Writes `2 * n bytes`.
 * @param len   pixels; 0 or less is taken as 1
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorRGB2YCC444_16S(const int16_t* pSrc, int16_t* pY, int16_t* pCb, int16_t* pCr,
                                                 int len);

/** @} */

/**
 * @defgroup color_ycc_to_rgb YCC to RGB
 * RGB, ARGB, BGRA and CMYK pixels of full-range Y, Cb and Cr; chroma repeated (NN) or interpolated (BL).
 * @{
 */

/**
 * Converts a row of YCC 4:4:4, full range, to RGB pixels.
 *
 *     R = clamp((2 Y + pqx_tRCr[Cr] - 359) >> 1, 0, 255)
 *     G = clamp((2 Y + pqx_tGCb[Cb] - pqx_tGCr[Cr]) >> 1, 0, 255)
 *     B = clamp((2 Y + pqx_tBCb[Cb] - 454) >> 1, 0, 255)
 *
 * @param pY    Y samples. Reads `len bytes`.
 * @param pCb   Cb samples. Reads `len bytes`.
 * @param pCr   Cr samples. Reads `len bytes`.
 * @param pDst  pixels of 3 bytes R, G, B. Writes `3 * len bytes`.
 * @param len   pixels; 0 or less writes nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorYCC2RGB444_8U(const uint8_t* pY, const uint8_t* pCb, const uint8_t* pCr,
                                                uint8_t* pDst, int len);

/**
 * Converts a row of YCC 4:4:4 to BGRA pixels, as pqx_Video_ColorYCC2RGB444_8U() does to RGB.
 *
 * @param pY    Y samples. Reads `len bytes`.
 * @param pCb   Cb samples. Reads `len bytes`.
 * @param pCr   Cr samples. Reads `len bytes`.
 * @param pDst  pixels of 4 bytes B, G, R, A; A is set to 255. Writes `4 * len bytes`.
 * @param len   pixels; 0 or less writes nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorYCC2BGRA444_8U(const uint8_t* pY, const uint8_t* pCb, const uint8_t* pCr,
                                                 uint8_t* pDst, int len);

/**
 * Converts a row of YCC 4:4:4 to ARGB pixels, as pqx_Video_ColorYCC2RGB444_8U() does to RGB.
 *
 * @param pY    Y samples. Reads `len bytes`.
 * @param pCb   Cb samples. Reads `len bytes`.
 * @param pCr   Cr samples. Reads `len bytes`.
 * @param pDst  pixels of 4 bytes A, R, G, B; A is set to 255. Writes `4 * len bytes`.
 * @param len   pixels; 0 or less writes nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorYCC2ARGB444_8U(const uint8_t* pY, const uint8_t* pCb, const uint8_t* pCr,
                                                 uint8_t* pDst, int len);

/**
 * Converts a row of YCC 4:2:2 to RGB pixels; chroma sample j serves pixels 2j and 2j+1 (nearest neighbour), each
 * as in pqx_Video_ColorYCC2RGB444_8U().
 *
 * With `n = len / 2`:
 *
 * @param pY    Y samples. Reads `2 * n bytes`.
 * @param pCb   Cb samples. Reads `n bytes`.
 * @param pCr   Cr samples. Reads `n bytes`.
 * @param pDst  pixels of 3 bytes R, G, B; with an odd len the last pixel is not written. Writes `6 * n bytes`.
 * @param len   pixels; below 2 writes nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorYCC2RGB422_NN_8U(const uint8_t* pY, const uint8_t* pCb, const uint8_t* pCr,
                                                   uint8_t* pDst, int len);

/**
 * Converts a row of YCC 4:2:2 to BGRA pixels; chroma sample j serves pixels 2j and 2j+1 (nearest neighbour), each
 * as in pqx_Video_ColorYCC2RGB444_8U().
 *
 * With `n = len / 2`:
 *
 * @param pY    Y samples. Reads `2 * n bytes`.
 * @param pCb   Cb samples. Reads `n bytes`.
 * @param pCr   Cr samples. Reads `n bytes`.
 * @param pDst  pixels of 4 bytes B, G, R, A; A is set to 255; with an odd len the last pixel is not written. Writes
 *              `8 * n bytes`.
 * @param len   pixels; below 2 writes nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorYCC2BGRA422_NN_8U(const uint8_t* pY, const uint8_t* pCb, const uint8_t* pCr,
                                                    uint8_t* pDst, int len);

/**
 * Converts a row of YCC 4:2:2 to RGB pixels with linearly interpolated chroma. With `n = max(len / 2, 1)` pairs, the
 * chroma of a pixel, Cb and Cr alike, is
 *
 *     c(2j)   = (3 c[j] + c[j-1] + 1) >> 2, but c(0) = c[0]
 *     c(2j+1) = (3 c[j] + c[j+1] + 2) >> 2, but c(2n-1) = c[n-1]
 *
 * and the pixel is then that of pqx_Video_ColorYCC2RGB444_8U().
 *
 * @param pY    Y samples. Reads `2 * n bytes`.
 * @param pCb   Cb samples. Reads `n bytes`.
 * @param pCr   Cr samples. Reads `n bytes`.
 * @param pDst  pixels of 3 bytes R, G, B; with an odd len the last pixel is not written. Writes `6 * n bytes`.
 * @param len   pixels; any value below 2, 0 and negative ones included, is taken as 2
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorYCC2RGB422_BL_8U(const uint8_t* pY, const uint8_t* pCb, const uint8_t* pCr,
                                                   uint8_t* pDst, int len);

/**
 * Converts a row of YCC 4:2:2 to BGRA pixels with linearly interpolated chroma, as
 * pqx_Video_ColorYCC2RGB422_BL_8U() does to RGB. With `n = max(len / 2, 1)`:
 *
 * @param pY    Y samples. Reads `2 * n bytes`.
 * @param pCb   Cb samples. Reads `n bytes`.
 * @param pCr   Cr samples. Reads `n bytes`.
 * @param pDst  pixels of 4 bytes B, G, R, A; A is set to 255; with an odd len the last pixel is not written. Writes
 *              `8 * n bytes`.
 * @param len   pixels; any value below 2, 0 and negative ones included, is taken as 2
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorYCC2BGRA422_BL_8U(const uint8_t* pY, const uint8_t* pCb, const uint8_t* pCr,
                                                    uint8_t* pDst, int len);

/**
 * Converts a pair of rows of YCC 4:2:0 to RGB pixels; chroma sample j serves pixels 2j and 2j+1 of both rows
 * (nearest neighbour), each as in pqx_Video_ColorYCC2RGB444_8U().
 *
 * With `n = len / 2`:
 *
 * @param pY0    upper row: Y samples. Reads `2 * n bytes`.
 * @param pY1    lower row: Y samples. Reads `2 * n bytes`.
 * @param pCb    Cb samples. Reads `n bytes`.
 * @param pCr    Cr samples. Reads `n bytes`.
 * @param pDst0  upper row: pixels of 3 bytes R, G, B; with an odd len the last pixel is not written. Writes
 *               `6 * n bytes`.
 * @param pDst1  lower row, likewise. Writes `6 * n bytes`.
 * @param len    pixels in a row; below 2 writes nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorYCC2RGB420_NN_8U(const uint8_t* pY0, const uint8_t* pY1, const uint8_t* pCb,
                                                   const uint8_t* pCr, uint8_t* pDst0, uint8_t* pDst1, int len);

/**
 * Converts a pair of rows of YCC 4:2:0 to BGRA pixels; chroma sample j serves pixels 2j and 2j+1 of both rows
 * (nearest neighbour), each as in pqx_Video_ColorYCC2RGB444_8U().
 *
 * With `n = len / 2`:
 *
 * @param pY0    upper row: Y samples. Reads `2 * n bytes`.
 * @param pY1    lower row: Y samples. Reads `2 * n bytes`.
 * @param pCb    Cb samples. Reads `n bytes`.
 * @param pCr    Cr samples. Reads `n bytes`.
 * @param pDst0  upper row: pixels of 4 bytes B, G, R, A; A is set to 255; with an odd len the last pixel is not
 *               written. Writes `8 * n bytes`.
 * @param pDst1  lower row, likewise. Writes `8 * n bytes`.
 * @param len    pixels in a row; below 2 writes nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorYCC2BGRA420_NN_8U(const uint8_t* pY0, const uint8_t* pY1, const uint8_t* pCb,
                                                    const uint8_t* pCr, uint8_t* pDst0, uint8_t* pDst1, int len);

/**
 * Converts a pair of rows of YCC 4:2:0 to RGB pixels with bilinearly interpolated chroma:
 * pqx_Video_UpSample420_BL_8U() of max(len / 2, 2) samples for Cb and for Cr, then
 * pqx_Video_ColorYCC2RGB444_8U() for each row.
 *
 * With an odd len of 5 or more the last pixel takes the interpolated chroma of its left neighbour: a last chroma
 * sample of its own, which such a row has in a picture, is not read. Rows longer than 4096 pixels take scratch memory
 * from pqx_Malloc(): four bytes for each pixel of len rounded up to a multiple of 8, which is more than there can be
 * beyond 536,870,888 pixels.
 *
 * With `n = len < 1 ? 0 : max(len / 2, 2)`:
 *
 * @param pY0    upper row: Y samples. Reads `len bytes`.
 * @param pY1    lower row: Y samples. Reads `len bytes`.
 * @param pCbA   Cb row above; the caller repeats pCbB at the top of a picture. Reads `n bytes`.
 * @param pCrA   Cr row above. Reads `n bytes`.
 * @param pCbB   Cb row of the two luma rows. Reads `n bytes`.
 * @param pCrB   Cr row of the two luma rows. Reads `n bytes`.
 * @param pCbC   Cb row below; the caller repeats pCbB at the bottom of a picture. Reads `n bytes`.
 * @param pCrC   Cr row below. Reads `n bytes`.
 * @param pDst0  upper row: pixels of 3 bytes R, G, B. Writes `3 * len bytes`.
 * @param pDst1  lower row, likewise. Writes `3 * len bytes`.
 * @param len    pixels in a row; 0 or less writes nothing. From 1 to 3, two samples of each chroma row are read all
 *               the same.
 * @return #PQX_OK, or #PQX_ERR_MEMORY, with nothing written, when there is no scratch memory
 */
PQX_API pqx_Status pqx_Video_ColorYCC2RGB420_BL_8U(const uint8_t* pY0, const uint8_t* pY1, const uint8_t* pCbA,
                                                   const uint8_t* pCrA, const uint8_t* pCbB, const uint8_t* pCrB,
                                                   const uint8_t* pCbC, const uint8_t* pCrC, uint8_t* pDst0,
                                                   uint8_t* pDst1, int len);

/**
 * Converts a pair of rows of YCC 4:2:0 to BGRA pixels with bilinearly interpolated chroma, as
 * pqx_Video_ColorYCC2RGB420_BL_8U() does to RGB, with the same scratch memory.
 *
 * With `n = len < 1 ? 0 : max(len / 2, 2)`:
 *
 * @param pY0    upper row: Y samples. Reads `len bytes`.
 * @param pY1    lower row: Y samples. Reads `len bytes`.
 * @param pCbA   Cb row above; the caller repeats pCbB at the top of a picture. Reads `n bytes`.
 * @param pCrA   Cr row above. Reads `n bytes`.
 * @param pCbB   Cb row of the two luma rows. Reads `n bytes`.
 * @param pCrB   Cr row of the two luma rows. Reads `n bytes`.
 * @param pCbC   Cb row below; the caller repeats pCbB at the bottom of a picture. Reads `n bytes`.
 * @param pCrC   Cr row below. Reads `n bytes`.
 * @param pDst0  upper row: pixels of 4 bytes B, G, R, A; A is set to 255. Writes `4 * len bytes`.
 * @param pDst1  lower row, likewise. Writes `4 * len bytes`.
 * @param len    pixels in a row; 0 or less writes nothing. From 1 to 3, two samples of each chroma row are read all
 *               the same.
 * @return #PQX_OK, or #PQX_ERR_MEMORY, with nothing written, when there is no scratch memory
 */
PQX_API pqx_Status pqx_Video_ColorYCC2BGRA420_BL_8U(const uint8_t* pY0, const uint8_t* pY1, const uint8_t* pCbA,
                                                    const uint8_t* pCrA, const uint8_t* pCbB, const uint8_t* pCrB,
                                                    const uint8_t* pCbC, const uint8_t* pCrC, uint8_t* pDst0,
                                                    uint8_t* pDst1, int len);

/**
 * Converts a row of YCCK 4:4:4 to CMYK pixels; K is copied.
 *
 *     C = clamp((2 (255 - Y) - pqx_tRCr[Cr] + 359) >> 1, 0, 255)
 *     M = clamp((2 (255 - Y) - pqx_tGCb[Cb] + pqx_tGCr[Cr]) >> 1, 0, 255)
 *     Y = clamp((2 (255 - Y) - pqx_tBCb[Cb] + 454) >> 1, 0, 255)
 *
 * @param pY    Y samples. Reads `len bytes`.
 * @param pCb   Cb samples. Reads `len bytes`.
 * @param pCr   Cr samples. Reads `len bytes`.
 * @param pK    K samples. Reads `len bytes`.
 * @param pDst  pixels of 4 bytes C, M, Y, K. Writes `4 * len bytes`.
 * @param len   pixels; 0 or less writes nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorYCCK2CMYK444_8U(const uint8_t* pY, const uint8_t* pCb, const uint8_t* pCr,
                                                  const uint8_t* pK, uint8_t* pDst, int len);

/**
 * Converts a row of 12-bit YCC 4:4:4, chroma centred on 2048, to RGB pixels, in single precision at a scale of
 * 2^20. With yf = Y * 1048576 - 2146959360 in single precision and cb = (Cb - 2048) << 20, cr alike, as 32-bit
 * integers converted to single precision:
 *
 *     R = cr * 1.402 + yf
 *     G = yf - cb * 0.34414 - cr * 0.71414
 *     B = cb * 1.772 + yf
 *
 * A value of 2147483647 or more gives 4095, one below -2147483648 gives 0, any other (trunc(value) >> 20) + 2048:
 * rounded to the nearest integer and saturated to 0..4095.
 *
 * @param pY    Y samples, normally 0..4095. Reads `2 * len bytes`.
 * @param pCb   Cb samples. Reads `2 * len bytes`.
 * @param pCr   Cr samples. Reads `2 * len bytes`.
 * @param pDst  pixels of 3 samples R, G, B. Writes `6 * len bytes`.
 * @param len   pixels; 0 or less writes nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorYCC2RGB444_16S(const int16_t* pY, const int16_t* pCb, const int16_t* pCr,
                                                 int16_t* pDst, int len);

/** @} */

/**
 * @defgroup color_yuv_to_rgb YUV to RGB for display
 * RGB, ARGB, ABGR and RGBA pictures of studio-range Y, U and V; enlarged, and rectangles of a picture alone.
 *
 * Alpha is set to 0: where a display or a file takes it for opacity, the picture is invisible until the caller sets
 * it, or ignores it.
 * @{
 */

/**
 * Converts a 4:1:1 picture of studio-range YUV (ITU-R BT.601) to RGB pixels for display; one U and one V serve
 * four pixels of a row.
 *
 *     R = clamp((pqx_tYY[Y] + pqx_tRV[V] - 446) >> 1, 0, 255)
 *     G = clamp((pqx_tYY[Y] + pqx_tGU[U] - pqx_tGV[V]) >> 1, 0, 255)
 *     B = clamp((pqx_tYY[Y] + pqx_tBU[U] - 554) >> 1, 0, 255)
 *
 * With `w = width / 4`:
 *
 * @param pY       Y plane. Reads `height rows of 4 * w bytes, yStep apart`.
 * @param yStep    bytes from row to row of pY
 * @param pU       U plane. Reads `height rows of w bytes, uvStep apart`.
 * @param pV       V plane. Reads `height rows of w bytes, uvStep apart`.
 * @param uvStep   bytes from row to row of pU and of pV
 * @param pDst     pixels of 3 bytes R, G, B; remaining columns are not written. Writes `height rows of 12 * w bytes,
 *                 dstStep apart`.
 * @param dstStep  bytes from row to row of pDst
 * @param width    pixels in a row; 0 or less does nothing
 * @param height   rows; 0 or less does nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorYUV2RGB411_8U(const uint8_t* pY, int yStep, const uint8_t* pU, const uint8_t* pV,
                                                int uvStep, uint8_t* pDst, int dstStep, int width, int height);

/**
 * Converts a 4:1:1 picture of studio-range YUV to ARGB pixels, as pqx_Video_ColorYUV2RGB411_8U() does to RGB.
 *
 * With `w = width / 4`:
 *
 * @param pY       Y plane. Reads `height rows of 4 * w bytes, yStep apart`.
 * @param yStep    bytes from row to row of pY
 * @param pU       U plane. Reads `height rows of w bytes, uvStep apart`.
 * @param pV       V plane. Reads `height rows of w bytes, uvStep apart`.
 * @param uvStep   bytes from row to row of pU and of pV
 * @param pDst     pixels of 4 bytes A, R, G, B; A is set to 0; remaining columns are not written. Writes
 *                 `height rows of 16 * w bytes, dstStep apart`.
 * @param dstStep  bytes from row to row of pDst
 * @param width    pixels in a row; 0 or less does nothing
 * @param height   rows; 0 or less does nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorYUV2ARGB411_8U(const uint8_t* pY, int yStep, const uint8_t* pU, const uint8_t* pV,
                                                 int uvStep, uint8_t* pDst, int dstStep, int width, int height);

/**
 * Converts a 4:1:1 picture of studio-range YUV to ABGR pixels, as pqx_Video_ColorYUV2RGB411_8U() does to RGB.
 *
 * With `w = width / 4`:
 *
 * @param pY       Y plane. Reads `height rows of 4 * w bytes, yStep apart`.
 * @param yStep    bytes from row to row of pY
 * @param pU       U plane. Reads `height rows of w bytes, uvStep apart`.
 * @param pV       V plane. Reads `height rows of w bytes, uvStep apart`.
 * @param uvStep   bytes from row to row of pU and of pV
 * @param pDst     pixels of 4 bytes A, B, G, R; A is set to 0; remaining columns are not written. Writes
 *                 `height rows of 16 * w bytes, dstStep apart`.
 * @param dstStep  bytes from row to row of pDst
 * @param width    pixels in a row; 0 or less does nothing
 * @param height   rows; 0 or less does nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorYUV2ABGR411_8U(const uint8_t* pY, int yStep, const uint8_t* pU, const uint8_t* pV,
                                                 int uvStep, uint8_t* pDst, int dstStep, int width, int height);

/**
 * Converts a 4:2:0 picture of studio-range YUV to RGB pixels by the formula of pqx_Video_ColorYUV2RGB411_8U(); one
 * U and one V serve the pixels of a 2x2 square.
 *
 * With `w = width / 2` and `h = height / 2`:
 *
 * @param pY       Y plane. Reads `2 * h rows of 2 * w bytes, yStep apart`.
 * @param yStep    bytes from row to row of pY
 * @param pU       U plane. Reads `h rows of w bytes, uvStep apart`.
 * @param pV       V plane. Reads `h rows of w bytes, uvStep apart`.
 * @param uvStep   bytes from row to row of pU and of pV
 * @param pDst     pixels of 3 bytes R, G, B; remaining columns and rows are not written. Writes
 *                 `2 * h rows of 6 * w bytes, dstStep apart`.
 * @param dstStep  bytes from row to row of pDst
 * @param width    pixels in a row; 0 or less does nothing
 * @param height   rows; 0 or less does nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorYUV2RGB420_8U(const uint8_t* pY, int yStep, const uint8_t* pU, const uint8_t* pV,
                                                int uvStep, uint8_t* pDst, int dstStep, int width, int height);

/**
 * Converts a 4:2:0 picture of studio-range YUV to ARGB pixels, as pqx_Video_ColorYUV2RGB420_8U() does to RGB.
 *
 * With `w = width / 2` and `h = height / 2`:
 *
 * @param pY       Y plane. Reads `2 * h rows of 2 * w bytes, yStep apart`.
 * @param yStep    bytes from row to row of pY
 * @param pU       U plane. Reads `h rows of w bytes, uvStep apart`.
 * @param pV       V plane. Reads `h rows of w bytes, uvStep apart`.
 * @param uvStep   bytes from row to row of pU and of pV
 * @param pDst     pixels of 4 bytes A, R, G, B; A is set to 0; remaining columns and rows are not written. Writes
 *                 `2 * h rows of 8 * w bytes, dstStep apart`.
 * @param dstStep  bytes from row to row of pDst
 * @param width    pixels in a row; 0 or less does nothing
 * @param height   rows; 0 or less does nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorYUV2ARGB420_8U(const uint8_t* pY, int yStep, const uint8_t* pU, const uint8_t* pV,
                                                 int uvStep, uint8_t* pDst, int dstStep, int width, int height);

/**
 * Converts a 4:2:0 picture of studio-range YUV to ABGR pixels, as pqx_Video_ColorYUV2RGB420_8U() does to RGB.
 *
 * With `w = width / 2` and `h = height / 2`:
 *
 * @param pY       Y plane. Reads `2 * h rows of 2 * w bytes, yStep apart`.
 * @param yStep    bytes from row to row of pY
 * @param pU       U plane. Reads `h rows of w bytes, uvStep apart`.
 * @param pV       V plane. Reads `h rows of w bytes, uvStep apart`.
 * @param uvStep   bytes from row to row of pU and of pV
 * @param pDst     pixels of 4 bytes A, B, G, R; A is set to 0; remaining columns and rows are not written. Writes
 *                 `2 * h rows of 8 * w bytes, dstStep apart`.
 * @param dstStep  bytes from row to row of pDst
 * @param width    pixels in a row; 0 or less does nothing
 * @param height   rows; 0 or less does nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorYUV2ABGR420_8U(const uint8_t* pY, int yStep, const uint8_t* pU, const uint8_t* pV,
                                                 int uvStep, uint8_t* pDst, int dstStep, int width, int height);

/**
 * Converts a 4:2:0 picture of studio-range YUV to RGBA pixels, as pqx_Video_ColorYUV2RGB420_8U() does to RGB.
 *
 * With `w = width / 2` and `h = height / 2`:
 *
 * @param pY       Y plane. Reads `2 * h rows of 2 * w bytes, yStep apart`.
 * @param yStep    bytes from row to row of pY
 * @param pU       U plane. Reads `h rows of w bytes, uvStep apart`.
 * @param pV       V plane. Reads `h rows of w bytes, uvStep apart`.
 * @param uvStep   bytes from row to row of pU and of pV
 * @param pDst     pixels of 4 bytes R, G, B, A; A is set to 0; remaining columns and rows are not written. Writes
 *                 `2 * h rows of 8 * w bytes, dstStep apart`.
 * @param dstStep  bytes from row to row of pDst
 * @param width    pixels in a row; 0 or less does nothing
 * @param height   rows; 0 or less does nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorYUV2RGBA420_8U(const uint8_t* pY, int yStep, const uint8_t* pU, const uint8_t* pV,
                                                 int uvStep, uint8_t* pDst, int dstStep, int width, int height);

/**
 * Converts a 4:2:2 picture of studio-range YUV to RGB pixels by the formula of pqx_Video_ColorYUV2RGB411_8U(); one
 * U and one V serve two pixels of a row.
 *
 * With `w = width / 2`:
 *
 * @param pY       Y plane. Reads `height rows of 2 * w bytes, yStep apart`.
 * @param yStep    bytes from row to row of pY
 * @param pU       U plane. Reads `height rows of w bytes, uvStep apart`.
 * @param pV       V plane. Reads `height rows of w bytes, uvStep apart`.
 * @param uvStep   bytes from row to row of pU and of pV
 * @param pDst     pixels of 3 bytes R, G, B; remaining columns are not written. Writes `height rows of 6 * w bytes,
 *                 dstStep apart`.
 * @param dstStep  bytes from row to row of pDst
 * @param width    pixels in a row; 0 or less does nothing
 * @param height   rows; 0 or less does nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorYUV2RGB422_8U(const uint8_t* pY, int yStep, const uint8_t* pU, const uint8_t* pV,
                                                int uvStep, uint8_t* pDst, int dstStep, int width, int height);

/**
 * Converts a 4:2:2 picture of studio-range YUV to ARGB pixels, as pqx_Video_ColorYUV2RGB422_8U() does to RGB.
 *
 * With `w = width / 2`:
 *
 * @param pY       Y plane. Reads `height rows of 2 * w bytes, yStep apart`.
 * @param yStep    bytes from row to row of pY
 * @param pU       U plane. Reads `height rows of w bytes, uvStep apart`.
 * @param pV       V plane. Reads `height rows of w bytes, uvStep apart`.
 * @param uvStep   bytes from row to row of pU and of pV
 * @param pDst     pixels of 4 bytes A, R, G, B; A is set to 0; remaining columns are not written. Writes
 *                 `height rows of 8 * w bytes, dstStep apart`.
 * @param dstStep  bytes from row to row of pDst
 * @param width    pixels in a row; 0 or less does nothing
 * @param height   rows; 0 or less does nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorYUV2ARGB422_8U(const uint8_t* pY, int yStep, const uint8_t* pU, const uint8_t* pV,
                                                 int uvStep, uint8_t* pDst, int dstStep, int width, int height);

/**
 * Converts a 4:2:2 picture of studio-range YUV to ABGR pixels, as pqx_Video_ColorYUV2RGB422_8U() does to RGB.
 *
 * With `w = width / 2`:
 *
 * @param pY       Y plane. Reads `height rows of 2 * w bytes, yStep apart`.
 * @param yStep    bytes from row to row of pY
 * @param pU       U plane. Reads `height rows of w bytes, uvStep apart`.
 * @param pV       V plane. Reads `height rows of w bytes, uvStep apart`.
 * @param uvStep   bytes from row to row of pU and of pV
 * @param pDst     pixels of 4 bytes A, B, G, R; A is set to 0; remaining columns are not written. Writes
 *                 `height rows of 8 * w bytes, dstStep apart`.
 * @param dstStep  bytes from row to row of pDst
 * @param width    pixels in a row; 0 or less does nothing
 * @param height   rows; 0 or less does nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorYUV2ABGR422_8U(const uint8_t* pY, int yStep, const uint8_t* pU, const uint8_t* pV,
                                                 int uvStep, uint8_t* pDst, int dstStep, int width, int height);

/**
 * Converts a 4:4:4 picture of studio-range YUV (ITU-R BT.601) to RGB pixels for display. These forms round
 * differently from the sub-sampled ones. With the sum s = pqx_t_Yuv2rgb[Y] + pqx_t_yUv2rgb[U] + pqx_t_yuV2rgb[V]:
 *
 *     R = clamp((s & 1023) - 256, 0, 255), G = clamp((s >> 10 & 1023) - 256, 0, 255), B = clamp(s >> 20, 0, 255)
 *
 * @param pY       Y plane. Reads `height rows of width bytes, srcStep apart`.
 * @param pU       U plane. Reads `height rows of width bytes, srcStep apart`.
 * @param pV       V plane. Reads `height rows of width bytes, srcStep apart`.
 * @param srcStep  bytes from row to row of the three planes
 * @param pDst     pixels of 3 bytes R, G, B. Writes `height rows of 3 * width bytes, dstStep apart`.
 * @param dstStep  bytes from row to row of pDst
 * @param width    pixels in a row; 0 or less does nothing
 * @param height   rows; 0 or less does nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorYUV2RGB444_8U(const uint8_t* pY, const uint8_t* pU, const uint8_t* pV, int srcStep,
                                                uint8_t* pDst, int dstStep, int width, int height);

/**
 * Converts a 4:4:4 picture of studio-range YUV to ARGB pixels, as pqx_Video_ColorYUV2RGB444_8U() does to RGB.
 *
 * @param pY       Y plane. Reads `height rows of width bytes, srcStep apart`.
 * @param pU       U plane. Reads `height rows of width bytes, srcStep apart`.
 * @param pV       V plane. Reads `height rows of width bytes, srcStep apart`.
 * @param srcStep  bytes from row to row of the three planes
 * @param pDst     pixels of 4 bytes A, R, G, B; A is set to 0. Writes `height rows of 4 * width bytes,
 *                 dstStep apart`.
 * @param dstStep  bytes from row to row of pDst
 * @param width    pixels in a row; 0 or less does nothing
 * @param height   rows; 0 or less does nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorYUV2ARGB444_8U(const uint8_t* pY, const uint8_t* pU, const uint8_t* pV, int srcStep,
                                                 uint8_t* pDst, int dstStep, int width, int height);

/**
 * Converts a 4:4:4 picture of studio-range YUV to ABGR pixels, as pqx_Video_ColorYUV2RGB444_8U() does to RGB.
 *
 * @param pY       Y plane. Reads `height rows of width bytes, srcStep apart`.
 * @param pU       U plane. Reads `height rows of width bytes, srcStep apart`.
 * @param pV       V plane. Reads `height rows of width bytes, srcStep apart`.
 * @param srcStep  bytes from row to row of the three planes
 * @param pDst     pixels of 4 bytes A, B, G, R; A is set to 0. Writes `height rows of 4 * width bytes,
 *                 dstStep apart`.
 * @param dstStep  bytes from row to row of pDst
 * @param width    pixels in a row; 0 or less does nothing
 * @param height   rows; 0 or less does nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorYUV2ABGR444_8U(const uint8_t* pY, const uint8_t* pU, const uint8_t* pV, int srcStep,
                                                 uint8_t* pDst, int dstStep, int width, int height);

/**
 * Shows a 4:2:0 picture of studio-range YUV at double size: every pixel of pqx_Video_ColorYUV2ABGR420_8U() becomes
 * a 2x2 square. Bytes A, B, G, R; A is set to 0.
 *
 * With an odd width the last column is not converted, and each further pair of rows starts one luma sample before
 * its regular place (luma advances by 2 * yStep - 1) and one enlarged pixel before it in the destination (4 *
 * dstStep - 8 bytes further).
 *
 * With `w = width / 2`, `h = height / 2` and `odd = width % 2`:
 *
 * @param pY       Y plane. Reads `h rows of 2 * w bytes, 2 * yStep - odd apart, from 0, yStep`.
 * @param yStep    bytes from row to row of pY
 * @param pU       U plane. Reads `h rows of w bytes, uvStep apart`.
 * @param pV       V plane. Reads `h rows of w bytes, uvStep apart`.
 * @param uvStep   bytes from row to row of pU and of pV
 * @param pDst     pixels of 4 bytes. Writes `h rows of 16 * w bytes, 4 * dstStep - 8 * odd apart, from 0, dstStep,
 *                 2 * dstStep, 3 * dstStep`.
 * @param dstStep  bytes from row to row of pDst
 * @param width    pixels in a row of the source; below 2 does nothing
 * @param height   rows of the source, rounded down to a multiple of 2; below 2 does nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorYUV2ABGR420_X2_8U(const uint8_t* pY, int yStep, const uint8_t* pU,
                                                    const uint8_t* pV, int uvStep, uint8_t* pDst, int dstStep,
                                                    int width, int height);

/**
 * Shows a 4:2:0 picture of studio-range YUV at triple size: every pixel of pqx_Video_ColorYUV2ABGR420_8U() becomes
 * a 3x3 square. Bytes A, B, G, R; A is set to 0.
 *
 * With an odd width the last column is not converted, and each further pair of rows starts one luma sample before
 * its regular place (luma advances by 2 * yStep - 1) and one enlarged pixel before it in the destination (6 *
 * dstStep - 12 bytes further).
 *
 * With `w = width / 2`, `h = height / 2` and `odd = width % 2`:
 *
 * @param pY       Y plane. Reads `h rows of 2 * w bytes, 2 * yStep - odd apart, from 0, yStep`.
 * @param yStep    bytes from row to row of pY
 * @param pU       U plane. Reads `h rows of w bytes, uvStep apart`.
 * @param pV       V plane. Reads `h rows of w bytes, uvStep apart`.
 * @param uvStep   bytes from row to row of pU and of pV
 * @param pDst     pixels of 4 bytes. Writes `h rows of 24 * w bytes, 6 * dstStep - 12 * odd apart, from 0, dstStep,
 *                 2 * dstStep, 3 * dstStep, 4 * dstStep, 5 * dstStep`.
 * @param dstStep  bytes from row to row of pDst
 * @param width    pixels in a row of the source; below 2 does nothing
 * @param height   rows of the source, rounded down to a multiple of 2; below 2 does nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorYUV2ABGR420_X3_8U(const uint8_t* pY, int yStep, const uint8_t* pU,
                                                    const uint8_t* pV, int uvStep, uint8_t* pDst, int dstStep,
                                                    int width, int height);

/**
 * Converts a rectangle of a 4:2:0 picture of studio-range YUV to ABGR pixels in its place of a destination of the
 * picture's size, each as in pqx_Video_ColorYUV2ABGR420_8U(). The rectangle x0 <= x < x1, y0 <= y < y1 may start
 * and end on odd coordinates; pixel (x, y) takes the chroma at (x >> 1, y >> 1). An empty or inverted rectangle
 * writes nothing.
 *
 * With `h = x0 < x1 ? y1 - y0 : 0` and `hc = h > 0 ? (y1 + 1 >> 1) - (y0 >> 1) : 0`:
 *
 * @param pY         Y plane. Reads `h rows of x1 - x0 bytes, yStep apart, from y0 * yStep + x0`.
 * @param yStep      bytes from row to row of pY
 * @param pU         U plane. Reads `hc rows of (x1 + 1 >> 1) - (x0 >> 1) bytes, uvStep apart,
 *                   from (y0 >> 1) * uvStep + (x0 >> 1)`.
 * @param pV         V plane. Reads `hc rows of (x1 + 1 >> 1) - (x0 >> 1) bytes, uvStep apart,
 *                   from (y0 >> 1) * uvStep + (x0 >> 1)`.
 * @param uvStep     bytes from row to row of pU and of pV
 * @param pDst       origin of the destination, 4 bytes a pixel: A, B, G, R; A is set to 0. Writes
 *                   `h rows of 4 * (x1 - x0) bytes, dstStep apart, from y0 * dstStep + 4 * x0`.
 * @param dstStep    bytes from row to row of pDst
 * @param picWidth   width of the picture; not read
 * @param picHeight  height of the picture; not read
 * @param x0         first column
 * @param y0         first row
 * @param x1         column behind the last
 * @param y1         row behind the last
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorYUV2ABGR420_W_8U(const uint8_t* pY, int yStep, const uint8_t* pU, const uint8_t* pV,
                                                   int uvStep, uint8_t* pDst, int dstStep, int picWidth,
                                                   int picHeight, int x0, int y0, int x1, int y1);

/**
 * Converts a rectangle of a 4:2:0 picture as pqx_Video_ColorYUV2ABGR420_W_8U(), into a destination 2 times the
 * picture's size: pixel (x, y) becomes a 2x2 square whose first pixel is (2x, 2y).
 *
 * With `h = x0 < x1 ? y1 - y0 : 0` and `hc = h > 0 ? (y1 + 1 >> 1) - (y0 >> 1) : 0`:
 *
 * @param pY         Y plane. Reads `h rows of x1 - x0 bytes, yStep apart, from y0 * yStep + x0`.
 * @param yStep      bytes from row to row of pY
 * @param pU         U plane. Reads `hc rows of (x1 + 1 >> 1) - (x0 >> 1) bytes, uvStep apart,
 *                   from (y0 >> 1) * uvStep + (x0 >> 1)`.
 * @param pV         V plane. Reads `hc rows of (x1 + 1 >> 1) - (x0 >> 1) bytes, uvStep apart,
 *                   from (y0 >> 1) * uvStep + (x0 >> 1)`.
 * @param uvStep     bytes from row to row of pU and of pV
 * @param pDst       origin of the destination, 4 bytes a pixel: A, B, G, R; A is set to 0. Writes
 *                   `2 * h rows of 8 * (x1 - x0) bytes, dstStep apart, from 2 * y0 * dstStep + 8 * x0`.
 * @param dstStep    bytes from row to row of pDst
 * @param picWidth   width of the picture; not read
 * @param picHeight  height of the picture; not read
 * @param x0         first column
 * @param y0         first row
 * @param x1         column behind the last
 * @param y1         row behind the last
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorYUV2ABGR420_WX2_8U(const uint8_t* pY, int yStep, const uint8_t* pU,
                                                     const uint8_t* pV, int uvStep, uint8_t* pDst, int dstStep,
                                                     int picWidth, int picHeight, int x0, int y0, int x1, int y1);

/**
 * Converts a rectangle of a 4:2:0 picture as pqx_Video_ColorYUV2ABGR420_W_8U(), into a destination 3 times the
 * picture's size: pixel (x, y) becomes a 3x3 square whose first pixel is (3x, 3y).
 *
 * With `h = x0 < x1 ? y1 - y0 : 0` and `hc = h > 0 ? (y1 + 1 >> 1) - (y0 >> 1) : 0`:
 *
 * @param pY         Y plane. Reads `h rows of x1 - x0 bytes, yStep apart, from y0 * yStep + x0`.
 * @param yStep      bytes from row to row of pY
 * @param pU         U plane. Reads `hc rows of (x1 + 1 >> 1) - (x0 >> 1) bytes, uvStep apart,
 *                   from (y0 >> 1) * uvStep + (x0 >> 1)`.
 * @param pV         V plane. Reads `hc rows of (x1 + 1 >> 1) - (x0 >> 1) bytes, uvStep apart,
 *                   from (y0 >> 1) * uvStep + (x0 >> 1)`.
 * @param uvStep     bytes from row to row of pU and of pV
 * @param pDst       origin of the destination, 4 bytes a pixel: A, B, G, R; A is set to 0. Writes
 *                   `3 * h rows of 12 * (x1 - x0) bytes, dstStep apart, from 3 * y0 * dstStep + 12 * x0`.
 * @param dstStep    bytes from row to row of pDst
 * @param picWidth   width of the picture; not read
 * @param picHeight  height of the picture; not read
 * @param x0         first column
 * @param y0         first row
 * @param x1         column behind the last
 * @param y1         row behind the last
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorYUV2ABGR420_WX3_8U(const uint8_t* pY, int yStep, const uint8_t* pU,
                                                     const uint8_t* pV, int uvStep, uint8_t* pDst, int dstStep,
                                                     int picWidth, int picHeight, int x0, int y0, int x1, int y1);

/** @} */

/**
 * @defgroup color_channels Channels
 * Bytes moved within pixels, planes merged to pixels and pixels split to planes.
 * @{
 */

/**
 * Drops the alpha byte: A, B, G, R to R, G, B. In place each pixel is read whole before it is written.
 *
 * @param pSrc  pixels of 4 bytes A, B, G, R. May read `4 * len bytes`.
 * @param pDst  pixels of 3 bytes R, G, B. Writes `3 * len bytes`. May equal `pSrc`.
 * @param len   pixels; 0 or less does nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorABGR2RGB_8U(const uint8_t* pSrc, uint8_t* pDst, int len);

/**
 * Drops the alpha byte: A, R, G, B to R, G, B. In place each pixel is read whole before it is written.
 *
 * @param pSrc  pixels of 4 bytes A, R, G, B. May read `4 * len bytes`.
 * @param pDst  pixels of 3 bytes R, G, B. Writes `3 * len bytes`. May equal `pSrc`.
 * @param len   pixels; 0 or less does nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorARGB2RGB_8U(const uint8_t* pSrc, uint8_t* pDst, int len);

/**
 * Adds an alpha byte of 0: R, G, B to A, B, G, R.
 *
 * @param pSrc  pixels of 3 bytes R, G, B. Reads `3 * len bytes`.
 * @param pDst  pixels of 4 bytes A, B, G, R. Writes `4 * len bytes`.
 * @param len   pixels; 0 or less does nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorRGB2ABGR_8U(const uint8_t* pSrc, uint8_t* pDst, int len);

/**
 * Adds an alpha byte of 0: R, G, B to A, R, G, B.
 *
 * @param pSrc  pixels of 3 bytes R, G, B. Reads `3 * len bytes`.
 * @param pDst  pixels of 4 bytes A, R, G, B. Writes `4 * len bytes`.
 * @param len   pixels; 0 or less does nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorRGB2ARGB_8U(const uint8_t* pSrc, uint8_t* pDst, int len);

/**
 * Exchanges bytes 1 and 3 of each 4-byte pixel in place: ARGB to ABGR or back.
 *
 * @param pSrcDst  pixels of 4 bytes. May read and write `4 * len bytes`.
 * @param len      pixels; 0 or less does nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorARGB2ABGR_8U_I(uint8_t* pSrcDst, int len);

/**
 * Exchanges bytes 0 and 2 of each 3-byte pixel in place: RGB to BGR or back.
 *
 * @param pSrcDst  pixels of 3 bytes. Reads and writes `3 * len bytes`.
 * @param len      pixels; 0 or less does nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorRGB2BGR_8U_I(uint8_t* pSrcDst, int len);

/**
 * Reverses the four bytes of each pixel, RGBA to ABGR or back, by the byte swap of libpqx_vector. Steps are
 * counted in pixels, not in bytes.
 *
 * @param pSrc     pixels of 4 bytes. Reads `height rows of 4 * width bytes, 4 * srcStep apart`.
 * @param srcStep  pixels from row to row of pSrc
 * @param pDst     pixels of 4 bytes. Writes `height rows of 4 * width bytes, 4 * dstStep apart`. May equal `pSrc`.
 * @param dstStep  pixels from row to row of pDst
 * @param width    pixels in a row; 0 or less does nothing
 * @param height   rows; 0 or less does nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorRGBA2ABGR_32U(const uint32_t* pSrc, int srcStep, uint32_t* pDst, int dstStep,
                                                int width, int height);

/**
 * Merges two planes into pixels of 2 bytes: pDst[2*i + k] = pSrck[i].
 *
 * @param pSrc0  channel 0. Reads `len bytes`.
 * @param pSrc1  channel 1. Reads `len bytes`.
 * @param len    pixels; 0 or less does nothing
 * @param pDst   pixels. Writes `2 * len bytes`.
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorMerge2_8U(const uint8_t* pSrc0, const uint8_t* pSrc1, int len, uint8_t* pDst);

/**
 * Merges three planes into pixels of 3 bytes: pDst[3*i + k] = pSrck[i].
 *
 * @param pSrc0  channel 0. Reads `len bytes`.
 * @param pSrc1  channel 1. Reads `len bytes`.
 * @param pSrc2  channel 2. Reads `len bytes`.
 * @param len    pixels; 0 or less does nothing
 * @param pDst   pixels. Writes `3 * len bytes`.
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorMerge3_8U(const uint8_t* pSrc0, const uint8_t* pSrc1, const uint8_t* pSrc2, int len,
                                            uint8_t* pDst);

/**
 * Merges four planes into pixels of 4 bytes: pDst[4*i + k] = pSrck[i].
 *
 * @param pSrc0  channel 0. Reads `len bytes`.
 * @param pSrc1  channel 1. Reads `len bytes`.
 * @param pSrc2  channel 2. Reads `len bytes`.
 * @param pSrc3  channel 3. Reads `len bytes`.
 * @param len    pixels; 0 or less does nothing
 * @param pDst   pixels. Writes `4 * len bytes`.
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorMerge4_8U(const uint8_t* pSrc0, const uint8_t* pSrc1, const uint8_t* pSrc2,
                                            const uint8_t* pSrc3, int len, uint8_t* pDst);

/**
 * Merges two planes into pixels of 2 16-bit samples: pDst[2*i + k] = pSrck[i].
 *
 * @param pSrc0  channel 0. Reads `2 * len bytes`.
 * @param pSrc1  channel 1. Reads `2 * len bytes`.
 * @param len    pixels; 0 or less does nothing
 * @param pDst   pixels. Writes `4 * len bytes`.
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorMerge2_16S(const int16_t* pSrc0, const int16_t* pSrc1, int len, int16_t* pDst);

/**
 * Merges three planes into pixels of 3 16-bit samples: pDst[3*i + k] = pSrck[i].
 *
 * @param pSrc0  channel 0. Reads `2 * len bytes`.
 * @param pSrc1  channel 1. Reads `2 * len bytes`.
 * @param pSrc2  channel 2. Reads `2 * len bytes`.
 * @param len    pixels; 0 or less does nothing
 * @param pDst   pixels. Writes `6 * len bytes`.
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorMerge3_16S(const int16_t* pSrc0, const int16_t* pSrc1, const int16_t* pSrc2,
                                             int len, int16_t* pDst);

/**
 * Merges four planes into pixels of 4 16-bit samples: pDst[4*i + k] = pSrck[i].
 *
 * @param pSrc0  channel 0. Reads `2 * len bytes`.
 * @param pSrc1  channel 1. Reads `2 * len bytes`.
 * @param pSrc2  channel 2. Reads `2 * len bytes`.
 * @param pSrc3  channel 3. Reads `2 * len bytes`.
 * @param len    pixels; 0 or less does nothing
 * @param pDst   pixels. Writes `8 * len bytes`.
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorMerge4_16S(const int16_t* pSrc0, const int16_t* pSrc1, const int16_t* pSrc2,
                                             const int16_t* pSrc3, int len, int16_t* pDst);

/**
 * Splits pixels of 2 bytes into two planes: pDstk[i] = pSrc[2*i + k].
 *
 * @param pSrc   pixels. Reads `2 * len bytes`.
 * @param pDst0  channel 0. Writes `len bytes`.
 * @param pDst1  channel 1. Writes `len bytes`.
 * @param len    pixels; 0 or less does nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorSplit2_8U(const uint8_t* pSrc, uint8_t* pDst0, uint8_t* pDst1, int len);

/**
 * Splits pixels of 3 bytes into three planes: pDstk[i] = pSrc[3*i + k].
 *
 * @param pSrc   pixels. Reads `3 * len bytes`.
 * @param pDst0  channel 0. Writes `len bytes`.
 * @param pDst1  channel 1. Writes `len bytes`.
 * @param pDst2  channel 2. Writes `len bytes`.
 * @param len    pixels; 0 or less does nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorSplit3_8U(const uint8_t* pSrc, uint8_t* pDst0, uint8_t* pDst1, uint8_t* pDst2,
                                            int len);

/**
 * Splits pixels of 4 bytes into four planes: pDstk[i] = pSrc[4*i + k].
 *
 * @param pSrc   pixels. Reads `4 * len bytes`.
 * @param pDst0  channel 0. Writes `len bytes`.
 * @param pDst1  channel 1. Writes `len bytes`.
 * @param pDst2  channel 2. Writes `len bytes`.
 * @param pDst3  channel 3. Writes `len bytes`.
 * @param len    pixels; 0 or less does nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorSplit4_8U(const uint8_t* pSrc, uint8_t* pDst0, uint8_t* pDst1, uint8_t* pDst2,
                                            uint8_t* pDst3, int len);

/**
 * Splits pixels of 2 16-bit samples into two planes: pDstk[i] = pSrc[2*i + k].
 *
 * @param pSrc   pixels. Reads `4 * len bytes`.
 * @param pDst0  channel 0. Writes `2 * len bytes`.
 * @param pDst1  channel 1. Writes `2 * len bytes`.
 * @param len    pixels; 0 or less does nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorSplit2_16S(const int16_t* pSrc, int16_t* pDst0, int16_t* pDst1, int len);

/**
 * Splits pixels of 3 16-bit samples into three planes: pDstk[i] = pSrc[3*i + k].
 *
 * @param pSrc   pixels. Reads `6 * len bytes`.
 * @param pDst0  channel 0. Writes `2 * len bytes`.
 * @param pDst1  channel 1. Writes `2 * len bytes`.
 * @param pDst2  channel 2. Writes `2 * len bytes`.
 * @param len    pixels; 0 or less does nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorSplit3_16S(const int16_t* pSrc, int16_t* pDst0, int16_t* pDst1, int16_t* pDst2,
                                             int len);

/**
 * Splits pixels of 4 16-bit samples into four planes: pDstk[i] = pSrc[4*i + k].
 *
 * @param pSrc   pixels. Reads `8 * len bytes`.
 * @param pDst0  channel 0. Writes `2 * len bytes`.
 * @param pDst1  channel 1. Writes `2 * len bytes`.
 * @param pDst2  channel 2. Writes `2 * len bytes`.
 * @param pDst3  channel 3. Writes `2 * len bytes`.
 * @param len    pixels; 0 or less does nothing
 * @return #PQX_OK always
 */
PQX_API pqx_Status pqx_Video_ColorSplit4_16S(const int16_t* pSrc, int16_t* pDst0, int16_t* pDst1, int16_t* pDst2,
                                             int16_t* pDst3, int len);

/** @} */

/** @} */

#ifdef __cplusplus
}
#endif

#endif
