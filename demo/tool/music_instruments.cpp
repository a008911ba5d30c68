#include "music_instruments.h"

#include "music_drums.h"
#include "music_synths.h"
#include "music_transitions.h"

namespace music {

void renderNote(const Note& note, StereoBuffer& out) {
    switch (note.instrument) {
        case Instrument::Kick:
            return renderKick(note, out);
        case Instrument::Snare:
            return renderSnare(note, out);
        case Instrument::Clap:
            return renderClap(note, out);
        case Instrument::ClosedHat:
            return renderClosedHat(note, out);
        case Instrument::OpenHat:
            return renderOpenHat(note, out);
        case Instrument::Shaker:
            return renderShaker(note, out);
        case Instrument::Ride:
            return renderRide(note, out);
        case Instrument::Crash:
            return renderCrash(note, out);
        case Instrument::Tom:
            return renderTom(note, out);
        case Instrument::Bass:
            return renderBass(note, out);
        case Instrument::GrowlBass:
            return renderGrowlBass(note, out);
        case Instrument::Pad:
            return renderPad(note, out);
        case Instrument::Choir:
            return renderChoir(note, out);
        case Instrument::Stab:
            return renderStab(note, out);
        case Instrument::Pluck:
            return renderPluck(note, out);
        case Instrument::Lead:
            return renderLead(note, out);
        case Instrument::Keys:
            return renderKeys(note, out);
        case Instrument::Bell:
            return renderBell(note, out);
        case Instrument::Riser:
            return renderRiser(note, out);
        case Instrument::ReverseCymbal:
            return renderReverseCymbal(note, out);
        case Instrument::Downlifter:
            return renderDownlifter(note, out);
        case Instrument::Impact:
            return renderImpact(note, out);
        case Instrument::Wind:
            return renderWind(note, out);
    }
}

}  // namespace music
