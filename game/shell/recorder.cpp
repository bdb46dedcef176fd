#include "shell/recorder.h"

CRecorder::~CRecorder()
{
    Close(false);
}

bool CRecorder::Open(const std::string& path, const std::string& remark)
{
    m_pFile = std::fopen(path.c_str(), "w");
    if (m_pFile == nullptr)
        return false;
    std::fprintf(m_pFile, "# %s\n", remark.c_str());
    return true;
}

void CRecorder::WriteFrames()
{
    if (m_nFrames > 0)
        std::fprintf(m_pFile, "frames %d\n", m_nFrames);
    m_nFrames = 0;
}

void CRecorder::Note(const std::string& command)
{
    if (m_pFile == nullptr)
        return;
    WriteFrames();
    std::fprintf(m_pFile, "%s\n", command.c_str());
    std::fflush(m_pFile);
}

void CRecorder::NextFrame()
{
    if (m_pFile == nullptr || ++m_nFrames < FLUSH_FRAMES)
        return;
    WriteFrames();
    std::fflush(m_pFile);
}

void CRecorder::Close(bool quit)
{
    if (m_pFile == nullptr)
        return;
    WriteFrames();
    if (quit)
        std::fprintf(m_pFile, "quit\n");
    std::fclose(m_pFile);
    m_pFile = nullptr;
}
