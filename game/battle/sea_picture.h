#pragma once
// The sea with all that is on it, painted for one display size.

#include <vector>

#include "battle/caption_font.h"
#include "battle/sea_scene.h"
#include "battle/silhouette.h"
#include "battle/sky.h"
#include "battle/waves.h"

/// Made in steps, so that a loading bar can go with them; may be drawn when PrepareStep has given false.
class CSeaPicture
{
  public:
    /// Each side is at least 1 pixel. The scene is copied.
    CSeaPicture(SeaScene scene, SIZE size);

    /// Steps that PrepareStep takes altogether.
    int StepCount() const;
    /// One more step; false when none was left.
    bool PrepareStep();

    SIZE Size() const { return m_Size; }
    const SeaScene& Scene() const { return m_Scene; }
    /// Everything, over the whole of `picture`, which has the picture's size. `milliseconds` is how long the
    /// sea has been moving; the same time gives the same picture.
    void Draw(const PixelView& picture, std::int64_t milliseconds);

  private:
    static constexpr int UNIT_STEPS = 8;
    static constexpr int SKY_STEPS = 16;

    /// A unit at its place on the display.
    struct Placed {
        Silhouette shape;
        int side = 0;
        bool floats = true; ///< on the water, which hides the lower edge
        float x = 0.0F;     ///< pixels, of the shape's origin
        float y = 0.0F;
        float line = 0.0F;   ///< line of the water below it: what is nearer covers it
        float length = 0.0F; ///< pixels
        float phase = 0.0F;  ///< turns
        std::uint16_t colour = 0;
    };
    void PlaceUnits(std::size_t first, std::size_t end);
    Placed Place(const SeaUnit& unit, std::size_t number) const;
    void DrawUnit(const PixelView& picture, const Placed& unit, double seconds) const;
    void DrawWash(const PixelView& picture, const Placed& unit, float x, double seconds) const;
    void DrawSmoke(const PixelView& picture, const Placed& unit, float x, float y, double seconds) const;
    void DrawFlag(const PixelView& picture, const Placed& unit, float x, float y, double seconds) const;
    void DrawCaption(const PixelView& picture) const;

    SeaScene m_Scene;
    SIZE m_Size;
    SeaLight m_Light;
    int m_nHorizon;
    CSky m_Sky;
    CWaves m_Waves;
    CCaptionFont m_Font;
    std::vector<Placed> m_Units; ///< the furthest first once all are placed
    int m_nStep = 0;
};
