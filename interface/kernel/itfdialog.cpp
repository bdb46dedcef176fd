#include "kernel/itfdialog.h"

#include <algorithm>

#include "controls/itfmenu.h"
#include "controls/itfreportbox.h"
#include "controls/itftextbox.h"
#include "keelworks/ds_file.h"
#include "kernel/dialog_loader.h"
#include "platform/system.h"

CItfDialog::~CItfDialog()
{
    for (Control& control : m_Controls)
        control.wnd.reset();
    m_Controls.clear();
}

bool CItfDialog::CreateFromResource(const char* caption, const char*, const RECT* rect, CItfWnd* parent,
                                    int ctrlId, std::uint32_t style, IEngine* core, const char* section)
{
    if (!CItfWnd::Create(caption, nullptr, rect, parent, ctrlId, style, core))
        return false;
    try {
        ds_file_buffered file(DIALOG_RESOURCE, false);
        CDialogLoader(*this, file).Load(section);
        file.close();
        return true;
    } catch (int code) {
        const std::string line =
            "Interface dialog creation failed. Error code: " + std::to_string(code) + "\r\n";
        OutputDebugStringA(line.c_str());
        Destroy(); // a class may delete itself here: nothing of this object from now on
        throw;
    } catch (const std::exception& error) {
        OutputDebugStringA((std::string(DIALOG_RESOURCE) + ": " + error.what() + "\r\n").c_str());
        OutputDebugStringA("Interface dialog creation failed. Unknown error.\r\n");
        Destroy();
        throw;
    } catch (...) {
        OutputDebugStringA("Interface dialog creation failed. Unknown error.\r\n");
        Destroy();
        throw;
    }
}

CItfWnd* CItfDialog::GetControl(int id) const
{
    for (const Control& control : m_Controls) {
        if (control.id == id)
            return control.wnd.get();
    }
    return nullptr;
}

bool CItfDialog::HasControl(int kind, int id) const
{
    return std::any_of(m_Controls.begin(), m_Controls.end(), [kind, id](const Control& control) {
        return control.kind == kind && control.id == id;
    });
}

void CItfDialog::SetBoxText(int id, const char* text)
{
    if (auto* box = GetControlAs<CItfTextBox>(id))
        box->SetText(text);
}

void CItfDialog::ShowBoxText(int id, const char* text)
{
    if (auto* box = GetControlAs<CItfTextBox>(id)) {
        box->SetText(text);
        box->Redraw();
    }
}

CItfReportBox* CItfDialog::FindTable(int id) const
{
    for (const Control& control : m_Controls) {
        if (control.kind == KIND_TABLE && control.wnd->GetCtrlId() == id)
            return static_cast<CItfReportBox*>(control.wnd.get());
    }
    return nullptr;
}

CItfMenu* CItfDialog::FindMenu(int id) const
{
    for (const Control& control : m_Controls) {
        if (control.kind == KIND_MENU && control.wnd->GetCtrlId() == id)
            return static_cast<CItfMenu*>(control.wnd.get());
    }
    return nullptr;
}

void CItfDialog::AddControl(int kind, int id, std::unique_ptr<CItfWnd> control)
{
    CItfWnd* wnd = control.get();
    m_Controls.push_back({kind, id, std::move(control)});
    wnd->Show(true);
}
