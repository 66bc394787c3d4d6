// The fixture of the tests that bring a fault into every writer.
#pragma once

#include <algorithm>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "fault/working_node.h"
#include "fault/writer_table.h"
#include "support/slow_build.h"
#include "support/traced_call.h"

// What the files of a writer hold; nothing: the file is not there.
using FileState = std::vector<std::optional<std::string>>;

class EveryWriter : public NodeTest, public testing::WithParamInterface<Writer> {
  protected:
    // A sanitizer's build takes every seventh point.
    static constexpr int kStride = kIsSlowBuild ? 7 : 1;

    EveryWriter() { GrantRequests(); }

    static FileState StateOf(const std::vector<const char *> &files) {
        FileState state;
        for (const char *file : files)
            state.push_back(Exists(file) ? std::optional(ReadText(file)) : std::nullopt);
        return state;
    }

    // An undisturbed call, with all that its files hold on the way.
    struct Course {
        int result = 0;
        int system_calls = 0;
        std::vector<FileState> states;

        bool Has(const FileState &state) const {
            return std::find(states.begin(), states.end(), state) != states.end();
        }
    };

    static void Prepare(const Writer &writer) {
        MakeWorkingNode();
        if (writer.prepare) writer.prepare();
    }

    Course Undisturbed(const Writer &writer) {
        Prepare(writer);
        Course course;
        course.states.push_back(StateOf(writer.files));
        const TracedCall run = RunTraced(writer.call, {}, [&] {
            const FileState state = StateOf(writer.files);
            if (state != course.states.back()) course.states.push_back(state);
        });
        course.result = run.result;
        course.system_calls = run.system_calls;
        EXPECT_GE(run.result, 0) << Join(log_.Take());
        return course;
    }

    // Whether the next call works, or the one after it: a left-over temporary file
    // of a snapshot makes one call fail.
    static bool WorksAgain(const Writer &writer, const Course &course) {
        for (int attempt = 0; attempt < 2; ++attempt) {
            if (writer.call() < 0) continue;
            return writer.Is(kOnce) || StateOf(writer.files) == course.states.back();
        }
        return false;
    }

    static std::string Join(const Lines &lines) {
        std::string text;
        for (const std::string &line : lines) text += line + "\n";
        return text;
    }
};

// The name of a case.
inline std::string WriterName(const testing::TestParamInfo<Writer> &row) {
    return row.param.name;
}
