#pragma once
// The further judge: the checker of files that lies beside the project on some machines, with its samples. A
// test without it says so in its output and is content with what it can do alone.

#include <cstdio>
#include <filesystem>
#include <iostream>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace vardelin::jet::judge {

inline const std::filesystem::path kFolder = std::filesystem::path(VARDELIN_ROOT) / ".." / "shared";
inline const std::filesystem::path kChecker = kFolder / "tools" / "jetcheck.py";

inline bool present(const char *forWhat)
{
    if (std::filesystem::exists(kChecker))
        return true;
    std::cout << "The judge ../shared/tools/jetcheck.py is absent: " << forWhat << " isn't judged by it.\n";
    return false;
}

inline std::string quoted(const std::string &word)
{
    return "'" + word + "'";
}

// Bytes as the judge prints them.
inline std::string hex(std::string_view bytes)
{
    static constexpr char kDigits[] = "0123456789abcdef";
    std::string text;
    for (const char byte : bytes) {
        text += kDigits[static_cast<unsigned char>(byte) >> 4];
        text += kDigits[static_cast<unsigned char>(byte) & 15];
    }
    return text;
}

struct Said
{
    int status = 0;
    std::string text;
    std::vector<std::string> lines() const
    {
        std::vector<std::string> all;
        std::istringstream in(text);
        for (std::string line; std::getline(in, line);)
            all.push_back(line);
        return all;
    }
    std::vector<std::vector<std::string>> fields() const // of lines with tabs
    {
        std::vector<std::vector<std::string>> all;
        for (const std::string &line : lines()) {
            all.emplace_back();
            std::istringstream in(line);
            for (std::string field; std::getline(in, field, '\t');)
                all.back().push_back(field);
        }
        return all;
    }
};

inline Said run(const std::string &command)
{
    Said said;
    FILE *pipe = popen(command.c_str(), "r"); // a test's own, fixed command
    if (!pipe)
        return {.status = -1, .text = {}};
    char buffer[4096];
    while (const std::size_t got = fread(buffer, 1, sizeof buffer, pipe))
        said.text.append(buffer, got);
    said.status = pclose(pipe) >> 8;
    return said;
}

inline Said check(const std::string &arguments)
{
    return run("python3 " + quoted(kChecker.string()) + " " + arguments);
}

// Many questions to one process of the judge, which reads a file once; each is a list of arguments.
inline std::vector<Said> checkAll(const std::vector<std::vector<std::string>> &questions)
{
    if (questions.empty())
        return {};
    static constexpr const char *kDriver =
        "import functools, sys; sys.path.insert(0, sys.argv[1]); import jetcheck\n"
        "jetcheck.load = functools.lru_cache(None)(jetcheck.load)\n"
        "jetcheck.Weights = functools.lru_cache(None)(jetcheck.Weights)\n"
        "for question in chr(10).join(sys.argv[2:]).split(chr(10) + chr(30) + chr(10)):\n"
        "    status = jetcheck.main(question.split(chr(10)))\n"
        "    print(chr(30) + str(status or 0))\n";
    std::string command = "python3 -c " + quoted(kDriver) + " " + quoted(kChecker.parent_path().string());
    for (std::size_t i = 0; i < questions.size(); ++i) {
        command += i == 0 ? "" : " " + quoted("\x1e");
        for (const std::string &argument : questions[i])
            command += " " + quoted(argument);
    }
    const Said all = run(command);
    std::vector<Said> answers;
    std::size_t from = 0;
    for (std::size_t at = 0; (at = all.text.find('\x1e', from)) != all.text.npos;) {
        const std::size_t end = all.text.find('\n', at);
        answers.push_back({std::stoi(all.text.substr(at + 1)), all.text.substr(from, at - from)});
        from = end + 1;
    }
    answers.resize(questions.size(), {-1, "no answer from the judge"});
    return answers;
}

} // namespace vardelin::jet::judge
