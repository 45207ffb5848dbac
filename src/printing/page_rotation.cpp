// Only what does not need the library's old pointers is used here.
#define POINTERHOLDER_TRANSITION 4
#include "printing/page_rotation.h"

#include <fmt/format.h>

#include <filesystem>
#include <fstream>
#include <qpdf/QPDF.hh>
#include <stdexcept>

namespace brimley::printing {

namespace {

// The page tree's object as it is to be, and what a further section of the file refers to.
struct PageTree {
    int number;
    std::string text;
    std::string root;
    std::string info;
    int objects;
};

PageTree turned_page_tree(const std::string& path, int degrees) {
    QPDF file;
    file.setAttemptRecovery(false);
    file.processFile(path.c_str());
    QPDFObjectHandle trailer = file.getTrailer();
    QPDFObjectHandle pages = file.getRoot().getKey("/Pages");
    pages.replaceKey("/Rotate", QPDFObjectHandle::newInteger(degrees));
    return {pages.getObjectID(), pages.unparseResolved(), trailer.getKey("/Root").unparse(),
            trailer.hasKey("/Info") ? " /Info " + trailer.getKey("/Info").unparse() : "",
            trailer.getKey("/Size").getIntValueAsInt()};
}

// Where the file's table of objects stands: the number after the last "startxref".
std::string table_offset(std::ifstream& file, std::uintmax_t size) {
    constexpr std::uintmax_t kTail = 64;
    std::string tail(std::min(size, kTail), ' ');
    file.seekg(static_cast<std::streamoff>(size - tail.size()));
    file.read(tail.data(), static_cast<std::streamsize>(tail.size()));
    const std::size_t found = tail.rfind("startxref\n");
    if (!file || found == std::string::npos) throw std::runtime_error("the file has no table of objects");
    const std::size_t number = found + 10;
    return tail.substr(number, tail.find_first_not_of("0123456789", number) - number);
}

}  // namespace

// A file may grow by new versions of its objects, with a table of their own. So a large file need not be read
// and held as a whole only to change one of them.
void append_rotation(const std::string& path, int degrees) {
    const PageTree tree = turned_page_tree(path, degrees);
    const std::uintmax_t size = std::filesystem::file_size(path);
    std::ifstream before(path, std::ios::binary);
    const std::string previous = table_offset(before, size);
    const std::string object = fmt::format("{} 0 obj\n{}\nendobj\n", tree.number, tree.text);
    std::ofstream file(path, std::ios::binary | std::ios::app);
    file << object
         << fmt::format("xref\n{} 1\n{:010} 00000 n \ntrailer\n<< /Size {} /Root {}{} /Prev {} >>\n",
                        tree.number, size, tree.objects, tree.root, tree.info, previous)
         << fmt::format("startxref\n{}\n%%EOF\n", size + object.size());
    file.close();
    if (!file) throw std::runtime_error("cannot write " + path);
}

}  // namespace brimley::printing
