#pragma once
// The strips above and below the chart: how the battle stands, the chosen unit, the keys.

#include <string>
#include <vector>

#include "battle/battle_controls.h"
#include "battle/caption_font.h"
#include "battle/chart_pen.h"
#include "battle/chart_texts.h"

/// What there is no room for is left out: of a unit what matters least first, of others from the right.
class CBattleStrips
{
  public:
    /// All must outlive the object.
    CBattleStrips(const CBattleControls& controls, const ChartWords& words, const CCaptionFont& head,
                  const CCaptionFont& small)
        : m_Controls(controls), m_Words(words), m_Head(head), m_Small(small)
    {
    }

    /// In the whole of the target.
    void Draw(const PixelView& target) const;

  private:
    /// A line that is written from left to right as far as there is room.
    struct Line {
        int pen;
        int top;
        int right;
        bool full = false;
    };

    /// A part of a unit's line.
    struct Part {
        std::string text;
        Colour colour;
        int gap;  ///< pixels before it
        int rank; ///< parts of a greater one are left out before those of a lesser, 0 are not at all
    };

    void DrawBack(const CChartPen& pen, const RECT& strip) const;
    /// A text of the upper strip's middle.
    struct ClockPart {
        std::string text;
        Colour colour;
    };

    /// `room` is in pixels.
    void DrawSide(const CChartPen& pen, int side, bool right, int room) const;
    std::vector<ClockPart> ClockParts() const;
    int WidthOf(const std::vector<ClockPart>& parts) const;
    void DrawClock(const PixelView& target, const std::vector<ClockPart>& parts) const;
    std::string Shortened(const std::string& name, int room) const;
    void DrawUnit(const CChartPen& pen, const BattleUnit& unit, Line line) const;
    void DrawChosen(const CChartPen& pen, Line line) const;
    void DrawKeys(const PixelView& target, int top) const;
    void Write(const PixelView& target, Line& line, const std::string& text, const Colour& colour) const;
    std::vector<Part> PartsOf(const BattleUnit& unit) const;
    int WidthOf(const std::vector<Part>& parts) const;
    std::vector<std::string> Keys() const;
    int WidthOfKey(const std::string& key) const;
    std::string OrderOf(const BattleUnit& unit) const;
    std::string GunsOf(const BattleUnit& unit) const;

    const CBattleControls& m_Controls;
    const ChartWords& m_Words;
    const CCaptionFont& m_Head;
    const CCaptionFont& m_Small;
};
