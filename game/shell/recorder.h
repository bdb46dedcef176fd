#pragma once

#include <cstdio>
#include <string>

/// Writes the player's input as a script that repeats it, frame by frame.
class CRecorder
{
  public:
    CRecorder() = default;
    ~CRecorder();
    CRecorder(const CRecorder&) = delete;
    CRecorder& operator=(const CRecorder&) = delete;

    /// False when the file can't be written. `remark` becomes its first line, a comment.
    bool Open(const std::string& path, const std::string& remark);
    /// A script command of the current frame.
    void Note(const std::string& command);
    /// The frame's input is over.
    void NextFrame();
    /// Notes the frames up to the end and, when the player ended the program, `quit`.
    void Close(bool quit);

  private:
    static constexpr int FLUSH_FRAMES = 50; // what a crash may cost
    void WriteFrames();
    std::FILE* m_pFile = nullptr;
    int m_nFrames = 0; // since the last command
};
