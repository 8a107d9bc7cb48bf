// Stand-in Foundation: strings, string arrays and statuses, held as UTF-8 throughout.
#include <maya/MStatus.h>
#include <maya/MString.h>
#include <maya/MStringArray.h>

#include <cstddef>
#include <cstdio>
#include <string>

namespace {

// The stand-in's locale is Latin-1: what asChar gives and what the char constructors take.
std::string latin1ToUtf8(const char* text, std::size_t length) {
    std::string utf8;
    for (std::size_t i = 0; i < length; ++i) {
        const unsigned char byte = static_cast<unsigned char>(text[i]);
        if (byte < 0x80) {
            utf8 += static_cast<char>(byte);
        } else {
            utf8 += static_cast<char>(0xC0 | (byte >> 6));
            utf8 += static_cast<char>(0x80 | (byte & 0x3F));
        }
    }
    return utf8;
}

std::string latin1ToUtf8(const char* text) {
    return text ? latin1ToUtf8(text, std::char_traits<char>::length(text)) : std::string();
}

std::string utf8ToLatin1(const std::string& utf8) {
    std::string latin1;
    for (std::size_t i = 0; i < utf8.size();) {
        const unsigned char lead = static_cast<unsigned char>(utf8[i]);
        std::size_t length = 1;
        unsigned codePoint = lead;
        if (lead >= 0xF0) {
            length = 4;
        } else if (lead >= 0xE0) {
            length = 3;
        } else if (lead >= 0xC0) {
            length = 2;
            if (i + 1 < utf8.size())
                codePoint =
                    ((lead & 0x1Fu) << 6) | (static_cast<unsigned char>(utf8[i + 1]) & 0x3Fu);
        }
        latin1 += codePoint < 0x100 && length <= 2 ? static_cast<char>(codePoint) : '?';
        i += length;
    }
    return latin1;
}

} // namespace

OPENMAYA_MAJOR_NAMESPACE_OPEN

MStatus::MStatus() : code_(kSuccess) {}
MStatus::MStatus(MStatusCode code) : code_(code) {}
MStatus::MStatus(const MStatus& other) = default;
MStatus& MStatus::operator=(const MStatus& other) = default;
bool MStatus::operator==(const MStatus& other) const {
    return code_ == other.code_;
}
bool MStatus::operator==(MStatusCode code) const {
    return code_ == code;
}
bool MStatus::operator!=(const MStatus& other) const {
    return code_ != other.code_;
}
bool MStatus::operator!=(MStatusCode code) const {
    return code_ != code;
}
MStatus::operator bool() const {
    return code_ == kSuccess;
}
bool MStatus::error() const {
    return code_ != kSuccess;
}
void MStatus::clear() {
    code_ = kSuccess;
}
MStatus::MStatusCode MStatus::statusCode() const {
    return code_;
}

MString MStatus::errorString() const {
    switch (code_) {
    case kSuccess:
        return "(kSuccess): No error";
    case kFailure:
        return "(kFailure): Unexpected Internal Failure";
    case kInsufficientMemory:
        return "(kInsufficientMemory): Insufficient memory";
    case kInvalidParameter:
        return "(kInvalidParameter): Object is incompatible with this method";
    case kLicenseFailure:
        return "(kLicenseFailure): License failure";
    case kUnknownParameter:
        return "(kUnknownParameter): Unknown parameter";
    case kNotImplemented:
        return "(kNotImplemented): Not implemented";
    case kNotFound:
        return "(kNotFound): Object not found";
    case kEndOfFile:
        return "(kEndOfFile): End of file";
    }
    return "(unknown)";
}

void MStatus::perror(const char* text) const {
    std::fprintf(stderr, "%s: %s\n", text, errorString().asChar());
}
void MStatus::perror(const MString& text) const {
    perror(text.asChar());
}

MString::MString() = default;
MString::MString(const char* text) : utf8_(latin1ToUtf8(text)) {}
MString::MString(const char* text, int charLength)
    : utf8_(text ? latin1ToUtf8(text, static_cast<std::size_t>(charLength)) : std::string()) {}
MString::MString(const MString& other) = default;
MString::~MString() = default;

MString& MString::operator+=(const MString& other) {
    utf8_ += other.utf8_;
    return *this;
}
MString& MString::operator+=(const char* other) {
    utf8_ += latin1ToUtf8(other);
    return *this;
}
MString& MString::operator+=(double other) {
    utf8_ += std::to_string(other);
    return *this;
}
MString& MString::operator+=(int other) {
    utf8_ += std::to_string(other);
    return *this;
}
MString& MString::operator+=(unsigned int other) {
    utf8_ += std::to_string(other);
    return *this;
}
MString& MString::operator+=(float other) {
    utf8_ += std::to_string(other);
    return *this;
}
MString& MString::operator=(const MString& other) = default;
MString& MString::operator=(const char* other) {
    utf8_ = latin1ToUtf8(other);
    return *this;
}
bool MString::operator==(const MString& other) const {
    return utf8_ == other.utf8_;
}
bool MString::operator==(const char* other) const {
    return utf8_ == (other ? other : "");
}
bool MString::operator!=(const MString& other) const {
    return !(*this == other);
}
bool MString::operator!=(const char* other) const {
    return !(*this == other);
}
MString MString::operator+(const MString& other) const {
    MString sum(*this);
    sum += other;
    return sum;
}
MString MString::operator+(const char* other) const {
    MString sum(*this);
    sum += other;
    return sum;
}
MString operator+(const char* left, const MString& right) {
    return MString(left) + right;
}

const char* MString::asChar() const {
    local_ = utf8ToLatin1(utf8_);
    return local_.c_str();
}
const char* MString::asChar(int& length) const {
    const char* text = asChar();
    length = static_cast<int>(local_.size());
    return text;
}
const char* MString::asUTF8() const {
    return utf8_.c_str();
}
const char* MString::asUTF8(int& length) const {
    length = static_cast<int>(utf8_.size());
    return utf8_.c_str();
}
MStatus MString::set(const char* text) {
    *this = text;
    return MS::kSuccess;
}
MStatus MString::setUTF8(const char* text) {
    utf8_ = text ? text : "";
    return MS::kSuccess;
}
unsigned int MString::length() const {
    return static_cast<unsigned int>(utf8ToLatin1(utf8_).size());
}
unsigned int MString::numChars() const {
    unsigned int count = 0;
    for (const char byte : utf8_)
        count += (static_cast<unsigned char>(byte) & 0xC0) != 0x80;
    return count;
}

MStringArray::MStringArray() = default;
MStringArray::MStringArray(const MStringArray& other) = default;
MStringArray::MStringArray(unsigned int initialSize, const MString& initialValue)
    : items_(initialSize, initialValue) {}
MStringArray::~MStringArray() = default;

MString MStringArray::operator[](unsigned int index) const {
    return index < items_.size() ? items_[index] : MString();
}
MString& MStringArray::operator[](unsigned int index) {
    if (index >= items_.size())
        items_.resize(index + 1);
    return items_[index];
}
unsigned int MStringArray::length() const {
    return static_cast<unsigned int>(items_.size());
}
MStatus MStringArray::append(const MString& element) {
    items_.push_back(element);
    return MS::kSuccess;
}
MStatus MStringArray::setLength(unsigned int length) {
    items_.resize(length);
    return MS::kSuccess;
}
MStatus MStringArray::clear() {
    items_.clear();
    return MS::kSuccess;
}
int MStringArray::indexOf(const MString& element) const {
    for (std::size_t i = 0; i < items_.size(); ++i) {
        if (items_[i] == element)
            return static_cast<int>(i);
    }
    return -1;
}

OPENMAYA_MAJOR_NAMESPACE_CLOSE
