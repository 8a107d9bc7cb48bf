#pragma once

#include <maya/MApiNamespace.h>
#include <maya/MStatus.h>

#include <string>

OPENMAYA_MAJOR_NAMESPACE_OPEN

class MString {
public:
    MString();
    MString(const char* text);
    MString(const wchar_t* text);
    MString(const char* text, int charLength);
    MString(const MString& other);
    ~MString();

    MString& operator+=(const MString& other);
    MString& operator+=(const char* other);
    MString& operator+=(double other);
    MString& operator+=(int other);
    MString& operator+=(unsigned int other);
    MString& operator+=(float other);
    MString& operator=(const MString& other);
    MString& operator=(const char* other);
    bool operator==(const MString& other) const;
    bool operator==(const char* other) const;
    bool operator!=(const MString& other) const;
    bool operator!=(const char* other) const;
    MString operator+(const MString& other) const;
    MString operator+(const char* other) const;

    const char* asChar() const;
    const char* asChar(int& length) const;
    const char* asUTF8() const;
    const char* asUTF8(int& length) const;
    const wchar_t* asWChar() const;
    MStatus set(const char* text);
    MStatus setUTF8(const char* text);
    MStatus setWChar(const wchar_t* text);
    unsigned int length() const;
    unsigned int numChars() const;

private:
    std::string utf8_;
    // asChar's text in the stand-in's locale, Latin-1, so that UTF-8 slips show.
    mutable std::string local_;
};

MString operator+(const char* left, const MString& right);

OPENMAYA_MAJOR_NAMESPACE_CLOSE
