#ifndef LUMADOT_TESTS_SUPPORT_PAGE_EXAMPLES_H
#define LUMADOT_TESTS_SUPPORT_PAGE_EXAMPLES_H

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace support {

/// The bytes of the example `name` on a page of the documentation: a code block that starts
/// "```hex name" and holds bytes in hexadecimal; "00*12" stands for 12 bytes of 00. An unknown name
/// fails the test and yields nothing.
std::vector<std::uint8_t> pageExample(const std::filesystem::path& page, const std::string& name);

/// The names of all examples on the page, in their order.
std::vector<std::string> pageExamples(const std::filesystem::path& page);

}  // namespace support

#endif
