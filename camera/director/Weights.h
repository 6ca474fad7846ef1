// What the director holds for worth seeing, and what a move costs. All of it is in seconds of missed sight: weight 1 for
// a second means that a viewer who does not see the thing misses a second.
#pragma once

namespace OrvantaNS::camera {

/// The director's numbers. Lengths are in lines of text, as the recording shows them, or shares of the screen.
struct DirectorWeights {
    // ---- Evidence: weights ----
    double press = 1.5;       ///< Around a press.
    double drag = 1.0;        ///< The box of a drag.
    double typing = 1.0;      ///< Around the caret where it moved.
    double change = 1.0;      ///< What was drawn, shared among the areas of a step.
    double smallWindow = 2.0; ///< A window in front that a readable frame holds, while it is there.
    double windowOpens = 1.3; ///< A window that was not there before.
    double parent = 1.0;      ///< The window from which a menu or dialog came.
    double returns = 1.0;     ///< A window to which the work goes back.
    double page = 1.0;        ///< The window in front while it scrolls or shows something new as a whole.
    double leftPart = 0.5;    ///< Share of a wide change that its left end gets.
    double pressPart = 0.3;   ///< Share of it that the last press in it gets.
    double linger = 0.5;      ///< What was of interest last, until something else is.
    double context = 0.15;    ///< The window in front.
    double cursor = 0.2;      ///< The cursor while it moves; less while it rests.
    double whole = 0.01;      ///< The whole screen.

    // ---- Loss ----
    double unread = 1.5;        ///< What reading is worth beside seeing: a factor on the odds of the next two.
    double unreadStep = 0.75;   ///< What a thing just too small to read loses of its weight.
    double unreadOctaves = 1.5; ///< Octaves below the readable zoom at which all of it is lost.
    double unreadWhole = 0.33; ///< The part of that loss that counts for windows and pages: they are seen first of all.
    double unreadBrief = 0.4;  ///< The same for what is pressed, typed and drawn where nothing is done for long.
    double wholeAsks = 2.0;    ///< How much of the others' reading a window or page takes, for each of its weight.
    double cropLarge = 1.5;    ///< How much faster than its share the sight of a cropped thing is lost.
    double cropSmall = 4.0;    ///< The same for presses and drags.
    double cropWindow = 15.0;  ///< The same for windows, dialogs, menus and pages: an edge that is cut off is noticed.

    // ---- Moves ----
    double move = 0.5;       ///< Any move.
    double moveZoom = 1.0;   ///< An octave of zoom.
    double moveWay = 1.0;    ///< The diagonal of the larger frame.
    double shortRest = 0.65; ///< A rest of less than five seconds after the move.
    double moveBlur = 1.0;   ///< A second of evidence during the move.
};

} // namespace OrvantaNS::camera
