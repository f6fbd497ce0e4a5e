#include "workflow/image_conversion.h"

#include "tests/tool/images.h"
#include "tests/workflow/workflow_fixture.h"

namespace {

using diagnostics::Code;

class ImageConversions : public WorkflowTest {
protected:
    static workflow::ConversionRequest request() {
        workflow::ConversionRequest request;
        request.from = "lin";
        request.to = "half_light";
        return request;
    }

    workflow::Session session{show_options()};
    workflow::Conversion conversion{session, request()};
};

TEST_F(ImageConversions, ReplaceTheOutputInTheTypeAskedFor) {
    const std::string input = folder.file("in.exr");
    write_image(input, make_image(3, 2, 3, OIIO::TypeHalf, std::vector<float>(18, 0.5f)));
    workflow::ImageOptions options;
    options.depth = "float";
    const workflow::ImageReport report =
        workflow::convert_image(conversion, input, folder.file("out.exr"), options);
    EXPECT_EQ(report.width, 3);
    EXPECT_EQ(report.height, 2);
    EXPECT_EQ(report.pixels, 6u);
    EXPECT_EQ(report.depth, "float");
    const Image output = read_image(folder.file("out.exr"));
    EXPECT_EQ(output.spec.format, OIIO::TypeFloat);
    EXPECT_EQ(output.get("B", 2, 1), 0.25f);
}

TEST_F(ImageConversions, ReportTheBitsOfTheFile) {
    const std::string input = folder.file("in.exr");
    write_image(input, make_image(1, 1, 3, OIIO::TypeHalf, std::vector<float>(3, 0.5f)));
    workflow::ImageOptions options;
    options.depth = "uint12";
    EXPECT_EQ(workflow::convert_image(conversion, input, folder.file("out.dpx"), options).depth, "uint12");
    EXPECT_EQ(read_image(folder.file("out.dpx")).spec.get_int_attribute("oiio:BitsPerSample"), 12);
}

TEST_F(ImageConversions, RefuseUnknownPixelTypesWithTheValidOnes) {
    workflow::ImageOptions options;
    options.depth = "uint14";
    const diagnostics::Diagnostic failure =
        failure_of([&] { workflow::make_image_settings(conversion, options); });
    EXPECT_EQ(failure.message, "unknown pixel type 'uint14'");
    EXPECT_EQ(failure.hint, "valid types: uint8, uint10, uint12, uint16, half, float");
}

TEST_F(ImageConversions, ConvertAnImageInItsPlace) {
    const std::string path = folder.file("in.exr");
    write_image(path, make_image(2, 2, 3, OIIO::TypeFloat, std::vector<float>(12, 1)));
    workflow::convert_image(conversion, path, path);
    EXPECT_EQ(read_image(path).get("R"), 0.5f);
}

TEST_F(ImageConversions, FailWithTheImageThatCannotBeRead) {
    const std::string output = folder.write("out.exr", "what was there");
    const diagnostics::Diagnostic failure =
        failure_of([&] { workflow::convert_image(conversion, folder.write("in.exr", "no image"), output); });
    EXPECT_EQ(failure.code, Code::IMAGE_UNREADABLE);
    EXPECT_EQ(failure.file, folder.file("in.exr"));
    EXPECT_EQ(folder.read("out.exr"), "what was there");
}

} // namespace
