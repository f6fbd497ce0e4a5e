#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "diagnostics/diagnostic.h"
#include "image/reader_process.h"
#include "workflow/image_settings.h"
#include "workflow/layer_choice.h"
#include "workflow/memory_budget.h"

namespace workflow {

/// Result of converting an image.
struct ImageReport {
    std::uint64_t pixels = 0; ///< Of all parts.
    int width = 0;            ///< Of the first part.
    int height = 0;
    std::string depth;  ///< Of the written colors: "half", "uint10".
    LayerReport layers; ///< Those that were written.
    /// About the input or the output, which they name: what the output format does not support, and so on.
    /// Each once.
    diagnostics::Diagnostics notes;
};

/// Reader process and memory, reused by the images of a sequence. For one thread at a time.
struct ImageBuffers {
    /// What they take is counted in `budget`, unless that is null.
    explicit ImageBuffers(MemoryBudget* budget = nullptr) : memory(budget) {}

    /// Frees the memory of both processes, of which that which reads ends until the next image.
    void release();

    image::ReaderProcess reader;
    image::PixelBuffer input;
    image::PixelBuffer output;
    MemoryShare memory; ///< Of which `convert_image` takes what an image needs.
};

/// Throws diagnostics::Failure when files at `output` cannot have the pixel type, the dithering or the
/// compression of the settings. `convert_image` does the same; this is for the start of a sequence.
void check_output(const ImageSettings& settings, const std::string& output);

/// What `convert_image` does when the budget of the buffers has no room for the image.
enum class WhenFull { WAIT, GIVE_UP };

/// Reads the image, converts the color layers of all its parts and writes the output, which is replaced only
/// when everything succeeded. Nothing is done, and nothing returned, when it gives up for lack of memory.
/// Throws diagnostics::Failure with the file and the reason. Thread-safe with different `buffers`.
std::optional<ImageReport> try_to_convert_image(const ImageJob& job, const ImageSettings& settings,
                                                ImageBuffers& buffers, WhenFull rule);

/// The same; waits for memory.
ImageReport convert_image(const ImageJob& job, const ImageSettings& settings, ImageBuffers& buffers);

/// The layers that `convert_image` would convert and leave. Throws what it would throw, as far as the headers
/// of the input and the folder of the output show it. Writes nothing.
LayerReport plan_image(const ImageJob& job, const ImageSettings& settings, image::ReaderProcess& reader);

} // namespace workflow
