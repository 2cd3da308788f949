/// Entry of the native tool: the arguments are UTF-8 already.
#include <iostream>
#include <string>
#include <vector>

#include "Run.h"

int main(int count, char** arguments)
{
    const std::vector<std::string> texts(arguments + (count > 0 ? 1 : 0), arguments + count);
    return zupm::tool::Run(texts, std::cout, std::cerr);
}
