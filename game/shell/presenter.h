#pragma once
// What is shown of the display picture: darkened by shades that run and by the brightness setting.

#include <cstdint>
#include <map>
#include <vector>

class CPresenter
{
  public:
    /// How dark the picture is on account of `owner`: 0 as it is, 1 black. The darkest owner counts.
    void SetFade(int owner, float level);
    void ClearFade(int owner) { m_Fades.erase(owner); }
    void ClearFades() { m_Fades.clear(); }
    /// 0 black, 1 as it is, up to 2.
    void SetBrightness(float brightness);
    /// Whether the same display would look different than at the last call.
    bool TakeChanged();
    /// The picture to show for `count` pixels of the display: either these or a changed copy, valid until the
    /// next call.
    const std::uint16_t* Compose(const std::uint16_t* display, std::size_t count);

  private:
    int Gain() const;

    std::map<int, float> m_Fades;
    float m_fBrightness = 1.0F;
    int m_nTakenGain = -1;
    std::vector<std::uint16_t> m_Picture;
};
