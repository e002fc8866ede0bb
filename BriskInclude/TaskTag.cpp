#include "TaskTag.h"

std::string MakeTaskTag(const char* _pFile, int _iLine, const char* _pFunction)
{
    std::string strTag = "{\"file\": \"";
    strTag += _pFile ? _pFile : "";
    strTag += "\",\"line\": \"";
    strTag += std::to_string(_iLine);
    strTag += "\", \"function\": \"";
    strTag += _pFunction ? _pFunction : "";
    strTag += "\"}";
    return strTag;
}
