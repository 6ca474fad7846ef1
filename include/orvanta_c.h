/*
 * The C interface: everything that the C++ libraries offer to a host, for C and for every language that calls C.
 *
 * A host makes a request, hands it the streams of a recording, and asks: for the plan of the whole clip, or for the frame
 * of one moment or one window. A plan has tables: keyframes, and on request what the engine saw at each stage. A path
 * says what the picture shows at every moment.
 *
 *   orvanta_request *request = NULL;
 *   orvanta_result *result = NULL;
 *   orvanta_options options;
 *   orvanta_options_init(&options, sizeof options);
 *   options.target_width = 640;  ...
 *   orvanta_request_create(&options, &request, NULL);
 *   orvanta_request_set_regions(request, regions, count, 0, NULL);  ...
 *   orvanta_plan(request, NULL, &result, NULL);
 *   ...
 *   orvanta_result_free(result);
 *   orvanta_request_free(request);
 *
 * Every function that can fail returns ORVANTA_OK or a code, and fills the caller's error record, which may be NULL. No
 * function prints, throws or ends the process. Nothing is kept between calls but the handles. Handles may be used on any
 * thread; one request may be planned, and one result or path read, by many threads at once as long as none of them
 * changes or frees it.
 *
 * Times are ticks of the request's clock (time_scale of them a second), or seconds where a field says so: ticks divided
 * by time_scale. Rectangles have their right and bottom edges one past the last pixel; y grows downward. Screen pixels go
 * in; local pixels come out: (0, 0) is the top left of the first recording region.
 */
#ifndef ORVANTA_C_H
#define ORVANTA_C_H

#include <stddef.h>
#include <stdint.h>

#if defined(ORVANTA_STATIC)
#define ORVANTA_C_EXPORT
#elif defined(_WIN32)
#if defined(ORVANTA_BUILDING_C)
#define ORVANTA_C_EXPORT __declspec(dllexport)
#else
#define ORVANTA_C_EXPORT __declspec(dllimport)
#endif
#else
#define ORVANTA_C_EXPORT __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

/** The version of the library, such as "0.1.0". */
ORVANTA_C_EXPORT const char* orvanta_version(void);

/* ---- Errors ---- */

/** What a call came to. 1 to 8 are the codes of the C++ library. */
enum orvanta_code {
    ORVANTA_OK = 0,
    ORVANTA_BAD_TARGET_SIZE = 1,  /**< The target is narrower or lower than 64 pixels. */
    ORVANTA_TARGET_TOO_LARGE = 2, /**< The target does not fit the recording, or has no size at all. */
    ORVANTA_BAD_TIME_SCALE = 3,   /**< The time scale is 0. */
    ORVANTA_BAD_REGION = 4,       /**< A recording region or foreground window is missing or too small. */
    ORVANTA_NO_LIVE_ZONES = 5,    /**< The regions change so often that no stretch is left to work on. */
    ORVANTA_MERGE_FAILED = 6,     /**< Merging met a state that it cannot handle. */
    ORVANTA_NO_KEYFRAMES = 7,     /**< Nothing is worth a move: the whole recording stays on show. */
    ORVANTA_CANCELLED = 8,        /**< The host asked to stop. */
    ORVANTA_BAD_ARGUMENT = 64,    /**< An argument is out of its range; the error's `parameter` says which. */
    ORVANTA_NOT_SORTED = 65,      /**< A stream goes back in time; the error's `index` says where. */
    ORVANTA_NO_ANSWER = 66,       /**< The engine has no answer to this question. */
    ORVANTA_NO_MEMORY = 67,       /**< Memory ran out. */
    ORVANTA_INTERNAL = 68         /**< A fault of the library, or an exception out of a host's callback. */
};

/** What an error is about. */
enum orvanta_parameter {
    ORVANTA_PARAMETER_NONE = 0,
    ORVANTA_PARAMETER_TARGET_WIDTH = 1,
    ORVANTA_PARAMETER_TARGET_HEIGHT = 2,
    ORVANTA_PARAMETER_TIME_SCALE = 3,
    ORVANTA_PARAMETER_FADE_DURATION = 4,
    ORVANTA_PARAMETER_CLIP = 5,
    ORVANTA_PARAMETER_ENGINE = 6,
    ORVANTA_PARAMETER_REGIONS = 7,      /**< The stream of recording regions. */
    ORVANTA_PARAMETER_WINDOWS = 8,      /**< The stream of foreground windows. */
    ORVANTA_PARAMETER_DIRTY_RECTS = 9,  /**< The stream of changed rectangles. */
    ORVANTA_PARAMETER_CARETS = 10,      /**< The stream of text carets. */
    ORVANTA_PARAMETER_CURSOR = 11,      /**< The stream of cursor positions. */
    ORVANTA_PARAMETER_ACTIONS = 12,     /**< The stream of button and wheel events. */
    ORVANTA_PARAMETER_STRUCT_SIZE = 13, /**< A record's `struct_size`. */
    ORVANTA_PARAMETER_STRIDE = 14,      /**< The distance between two samples or rows. */
    ORVANTA_PARAMETER_POINTER = 15,     /**< A pointer that must not be NULL. */
    ORVANTA_PARAMETER_TABLE = 16,       /**< A table's number. */
    ORVANTA_PARAMETER_EASING = 17,      /**< The curve of the moves. */
    ORVANTA_PARAMETER_KEYFRAMES = 18,   /**< The keyframes of a path. */
    ORVANTA_PARAMETER_TIMES = 19,       /**< The moments that a path is asked for. */
    ORVANTA_PARAMETER_CALM = 20,
    ORVANTA_PARAMETER_READABLE = 21,
    ORVANTA_PARAMETER_PRESSES = 22
};

/** Why a call failed. Belongs to the caller, who sets `struct_size` to sizeof(orvanta_error) before each call. */
typedef struct orvanta_error {
    uint32_t struct_size; /**< sizeof(orvanta_error) as the host knows it. */
    int32_t code;         /**< An orvanta_code; ORVANTA_OK after a call that did not fail. */
    int32_t parameter;    /**< An orvanta_parameter: what the error is about. */
    int32_t reserved;     /**< Zero. */
    double value;         /**< What was given, where that is a number; else 0. */
    double limit;         /**< The bound that it missed, where there is one; else 0. */
    int64_t index;        /**< The sample or row at fault, from 0; -1 where there is none. */
    char message[256];    /**< One sentence in English that says what is wrong and what to do; ends with a zero byte. */
} orvanta_error;

/* ---- Requests ---- */

/** Which engine answers. */
enum orvanta_engine {
    ORVANTA_ENGINE_VALUE = 0,  /**< The value engine: understands what happened and cuts it into few shots. */
    ORVANTA_ENGINE_VOTING = 1, /**< The voting engine: small and quick; it does not read the clip. */
    ORVANTA_ENGINE_DIRECTOR =
        2 /**< The director: finds by search the calmest path on which the recording can be read. */
};

/** What presses of buttons may ask of the director. */
enum orvanta_presses {
    ORVANTA_PRESSES_ALWAYS = 0, /**< A press lies in the picture, unless no path can hold it. */
    ORVANTA_PRESSES_CHEAP = 1   /**< A press may be left out where showing it costs much. */
};

/** A rectangle. */
typedef struct orvanta_rect {
    int32_t left;   /**< First column. */
    int32_t top;    /**< First row. */
    int32_t right;  /**< One past the last column. */
    int32_t bottom; /**< One past the last row. */
} orvanta_rect;

/** A rectangle from a moment on: a sample of regions, windows, changed rectangles or carets. */
typedef struct orvanta_timed_rect {
    int64_t time;      /**< Ticks. */
    orvanta_rect rect; /**< Screen pixels. A window that is all zero says that there is none. */
} orvanta_timed_rect;

/** A sample of the cursor's position. */
typedef struct orvanta_cursor_sample {
    int64_t time; /**< Ticks. */
    int32_t x;    /**< Screen pixels. */
    int32_t y;    /**< Screen pixels. */
} orvanta_cursor_sample;

/** An event of the cursor's buttons or wheel. */
typedef struct orvanta_action_sample {
    int64_t time;     /**< Ticks. */
    int32_t action;   /**< 0, 2, 4: press of left, right, middle; 1, 3, 5: its release; 6, 7: a wheel step up, down. */
    int32_t reserved; /**< Zero. */
} orvanta_action_sample;

/** What is asked of a recording, beside its streams. Filled by orvanta_options_init before a host sets fields. */
typedef struct orvanta_options {
    uint32_t struct_size;  /**< The size of the record as the host knows it; set by orvanta_options_init. */
    int32_t engine;        /**< An orvanta_engine; the value engine by default. */
    int32_t target_width;  /**< Width of the output frame, pixels; at least 64. Must be set. */
    int32_t target_height; /**< Height of the output frame, pixels; at least 64. Must be set. */
    double time_scale;     /**< Ticks per second of every time in the request; 1,000,000 by default; not 0. */
    int64_t fade_duration; /**< Ticks that the animated move to a keyframe takes; one second by default. */
    int64_t clip_start;    /**< First tick of the stretch to process; 0 by default. */
    int64_t clip_stop;     /**< Its last tick; 0 by default, with which there is nothing to process. Must be set. */
    int32_t windows_flag;  /**< Not 0 where the platform does not report menus as windows; 0 by default. */
    int32_t presses;       /**< An orvanta_presses, for the director; always by default. */
    double calm;      /**< For the director: seconds of better sight that a move must earn, in units of a usual viewer's
                              patience; 1 by default, 0.25 is lively, 3 is very calm; above 0. */
    double readable;  /**< For the director: the zoom from which text counts as readable; 0.75 by default; at most 1. */
    int32_t overhang; /**< For the director: not 0 allows frames larger than the recording in one dimension. */
    int32_t reserved; /**< Zero. */
} orvanta_options;

/** One recording and what is asked of it. */
typedef struct orvanta_request orvanta_request;

/** Fills the first `size` bytes of `options`, which is sizeof(orvanta_options) as the host knows it, with the defaults. */
ORVANTA_C_EXPORT int32_t orvanta_options_init(orvanta_options* options, size_t size);

/** Makes a request without streams. `*request` is NULL after a failure. */
ORVANTA_C_EXPORT int32_t orvanta_request_create(const orvanta_options* options, orvanta_request** request,
                                                orvanta_error* error);
/** Changes the options of a request and keeps its streams. A request is unchanged after a failure. */
ORVANTA_C_EXPORT int32_t orvanta_request_set_options(orvanta_request* request, const orvanta_options* options,
                                                     orvanta_error* error);
/** Frees a request; NULL is passed over. Results and paths made from it live on. */
ORVANTA_C_EXPORT void orvanta_request_free(orvanta_request* request);

/*
 * Each of these replaces one stream of a request by a copy of `count` samples. `samples` points to the first; each
 * further one lies `stride` bytes behind the one before it, so that a host may hand over records of its own that begin
 * with the fields named here. A stride of 0 stands for the record's own size. The samples' times must never go back. A
 * stream that is missing costs accuracy, not correctness, but for the regions, of which there must be one.
 */

/** The part of the screen that was recorded, from each entry's time on: orvanta_timed_rect. The first one gives the
 *  recording's frame. */
ORVANTA_C_EXPORT int32_t orvanta_request_set_regions(orvanta_request* request, const void* samples, size_t count,
                                                     size_t stride, orvanta_error* error);
/** The window in front, whenever it changes and, best, some ten times a second: orvanta_timed_rect. */
ORVANTA_C_EXPORT int32_t orvanta_request_set_windows(orvanta_request* request, const void* samples, size_t count,
                                                     size_t stride, orvanta_error* error);
/** Rectangles of the screen that changed: orvanta_timed_rect. */
ORVANTA_C_EXPORT int32_t orvanta_request_set_dirty_rects(orvanta_request* request, const void* samples, size_t count,
                                                         size_t stride, orvanta_error* error);
/** Rectangles of the text caret: orvanta_timed_rect. */
ORVANTA_C_EXPORT int32_t orvanta_request_set_carets(orvanta_request* request, const void* samples, size_t count,
                                                    size_t stride, orvanta_error* error);
/** Positions of the cursor: orvanta_cursor_sample. */
ORVANTA_C_EXPORT int32_t orvanta_request_set_cursor(orvanta_request* request, const void* samples, size_t count,
                                                    size_t stride, orvanta_error* error);
/** Button and wheel events: orvanta_action_sample. */
ORVANTA_C_EXPORT int32_t orvanta_request_set_actions(orvanta_request* request, const void* samples, size_t count,
                                                     size_t stride, orvanta_error* error);

/* ---- Questions ---- */

/** How far a plan is, in percent. Called on the planning thread. Not clamped: odd clips can give values outside 0 to
 *  100, infinite ones, or one that is not a number. */
typedef void (*orvanta_progress_fn)(double percent, void* user_data);
/** Asked often while a plan is made, on the planning thread; anything but 0 ends it with ORVANTA_CANCELLED. */
typedef int32_t (*orvanta_cancelled_fn)(void* user_data);

/** How to carry out a plan. All zero but `struct_size` asks for nothing special. */
typedef struct orvanta_run {
    uint32_t struct_size;           /**< sizeof(orvanta_run) as the host knows it. */
    int32_t keep_stages;            /**< Not 0: the result has the tables of all stages, beside the keyframes. */
    orvanta_progress_fn progress;   /**< May be NULL. The voting engine reports 0 and 100 only. */
    orvanta_cancelled_fn cancelled; /**< May be NULL. The voting engine asks before and after its work only. */
    void* user_data;                /**< Handed to both. */
} orvanta_run;

/** What a plan came to. */
typedef struct orvanta_result orvanta_result;

/**
 * Plans the camera for the whole clip. `run` may be NULL.
 *
 * `*result` is NULL after a failure, with one exception: ORVANTA_NO_KEYFRAMES is an answer too. The whole recording then
 * stays on show, the result has no keyframes, and the tables of the stages up to where the work ended.
 */
ORVANTA_C_EXPORT int32_t orvanta_plan(const orvanta_request* request, const orvanta_run* run, orvanta_result** result,
                                      orvanta_error* error);
/** The one frame that is best at a moment, from what lies around it: `*frame`, local pixels. */
ORVANTA_C_EXPORT int32_t orvanta_frame_at(const orvanta_request* request, int64_t time, orvanta_rect* frame,
                                          orvanta_error* error);
/** The frame for the first entry of the windows, without a timeline: `*frame`, local pixels. The voting engine has no
 *  answer: ORVANTA_NO_ANSWER. */
ORVANTA_C_EXPORT int32_t orvanta_frame_at_window(const orvanta_request* request, orvanta_rect* frame,
                                                 orvanta_error* error);
/** Frees a result; NULL is passed over. The rows of its tables go with it. */
ORVANTA_C_EXPORT void orvanta_result_free(orvanta_result* result);

/* ---- Tables of a result ---- */

/** The tables of a result, each with the type of its rows. */
enum orvanta_table_id {
    ORVANTA_TABLE_KEYFRAMES = 0,    /**< orvanta_keyframe, by time. */
    ORVANTA_TABLE_ZONES = 1,        /**< orvanta_zone: when which part of the screen was recorded. */
    ORVANTA_TABLE_OBJECTS = 2,      /**< orvanta_object: what happened, by start. */
    ORVANTA_TABLE_SLICES = 3,       /**< orvanta_slice: the timeline cut by where the value lies. */
    ORVANTA_TABLE_SLICE_SPACES = 4, /**< orvanta_space: the rectangles of the slices, those of one slice in a row. */
    ORVANTA_TABLE_SHOTS = 5,        /**< orvanta_slice: the same slices, by the same numbers, after merging. */
    ORVANTA_TABLE_SHOT_SPACES = 6   /**< orvanta_space: the rectangles of the shots. */
};

/** Rows of one type. They belong to the result. */
typedef struct orvanta_table {
    const void* rows; /**< The first row; NULL when there is none. */
    size_t count;     /**< How many there are. */
    size_t stride;    /**< Bytes from one row to the next; a later library may have longer rows. */
} orvanta_table;

/** Row `i` of a table: ORVANTA_ROW(orvanta_keyframe, table, i)->time. */
#define ORVANTA_ROW(type, table, i) ((const type*)(const void*)((const char*)(table).rows + (i) * (table).stride))

/** How a shot is framed, and so why its keyframe stands where it does. */
enum orvanta_mode {
    ORVANTA_MODE_NONE = 0,       /**< Not classified; the other engines give no other. */
    ORVANTA_MODE_TIGHT = 1,      /**< Close on what happens. */
    ORVANTA_MODE_WIDE = 2,       /**< The window. */
    ORVANTA_MODE_LOOSE = 3,      /**< Several places that belong to no window. */
    ORVANTA_MODE_FORCED = 4,     /**< What was left of a shot too short to stand. */
    ORVANTA_MODE_OFF_WINDOW = 5, /**< Outside the window. */
    ORVANTA_MODE_FULL_SCREEN = 6 /**< The whole recording. */
};

/** From `time` on, the picture moves to `rect`; the move takes the fade. */
typedef struct orvanta_keyframe {
    int64_t time;      /**< Ticks. */
    orvanta_rect rect; /**< Local pixels. */
    double seconds;    /**< `time` in seconds. */
    int32_t reason;    /**< Why the keyframe is there: the orvanta_mode it was framed by. */
    int32_t shot_mode; /**< The orvanta_mode of its shot. */
    int32_t shot;      /**< The row of its shot in ORVANTA_TABLE_SHOTS; -1 without one. */
    int32_t reserved;  /**< Zero. */
} orvanta_keyframe;

/** A stretch during which one part of the screen was recorded. */
typedef struct orvanta_zone {
    double start;      /**< Seconds. */
    double stop;       /**< Seconds. */
    orvanta_rect rect; /**< Screen pixels. */
} orvanta_zone;

/** A rectangle that mattered for a while. */
typedef struct orvanta_object {
    double start;      /**< Seconds. */
    double stop;       /**< Seconds. */
    double value;      /**< Scratch of the engine: worth over the interval that was looked at last, value-seconds. */
    orvanta_rect rect; /**< Pixels relative to its zone. */
    int32_t type;      /**< See orvanta_object_type_name. */
    int32_t reserved;  /**< Zero. */
} orvanta_object;

/** What is true of a slice or shot. */
enum orvanta_slice_flags {
    ORVANTA_SLICE_BLANK = 1,      /**< Nothing to show here. */
    ORVANTA_SLICE_KEYFRAME = 2,   /**< Merging had to respect its start. */
    ORVANTA_SLICE_BLOCKED = 4,    /**< The transition to the next one is fixed. */
    ORVANTA_SLICE_IDENTIFIED = 8, /**< It was classified; the flags below and the two rectangles mean something. */
    ORVANTA_SLICE_TIGHT = 16,     /**< Its hot rectangle fits a close shot. */
    ORVANTA_SLICE_IN_WINDOW = 32, /**< Its hot rectangle lies in its window. */
    ORVANTA_SLICE_WINDOW = 64,    /**< It has one window throughout. */
    ORVANTA_SLICE_NO_WINDOW = 128 /**< The whole recording changed. */
};

/** A stretch of the timeline with one focus. */
typedef struct orvanta_slice {
    double start;             /**< Seconds. */
    double stop;              /**< Seconds; of a shot, the end of the last slice that it took in. */
    double span;              /**< Seconds that its rectangles sum up. */
    orvanta_rect window_rect; /**< Local pixels. */
    orvanta_rect hot_rect;    /**< Local pixels: where most of the value lies. */
    uint32_t first_space;     /**< Its first row in the table of spaces. */
    uint32_t space_count;     /**< How many rows there belong to it. */
    int32_t revision;         /**< How often it took another in; -1 where it was merged into an earlier one. */
    int32_t mode;             /**< An orvanta_mode. */
    uint32_t flags;           /**< A sum of orvanta_slice_flags. */
    uint32_t reserved;        /**< Zero. */
} orvanta_slice;

/** A rectangle of a slice, the highest value first. */
typedef struct orvanta_space {
    orvanta_rect rect; /**< Local pixels. */
    double density;    /**< Value for each pixel. */
} orvanta_space;

/** Why a keyframe is there, in words: what its shot is for where the director was asked with `keep_stages`, else its
 *  mode's name. "" for a row that is not there. Belongs to the result. */
ORVANTA_C_EXPORT const char* orvanta_result_reason(const orvanta_result* result, size_t keyframe);
/** Gives one table of a result: an orvanta_table_id. Tables that were not asked for are empty. */
ORVANTA_C_EXPORT int32_t orvanta_result_table(const orvanta_result* result, int32_t id, orvanta_table* table,
                                              orvanta_error* error);

/** A mode in words, such as "off-window"; "" for ORVANTA_MODE_NONE and for what is no mode. Lives as long as the
 *  library. */
ORVANTA_C_EXPORT const char* orvanta_mode_name(int32_t mode);
/** A type of object in a word, such as "Click"; "" for what is no type. Lives as long as the library. */
ORVANTA_C_EXPORT const char* orvanta_object_type_name(int32_t type);

/* ---- Camera path ---- */

/** What the output frame shows at a moment: a rectangle of the recording in local pixels, fractions included, exactly of
 *  the output frame's shape. */
typedef struct orvanta_frame {
    double left;       /**< Left edge. */
    double top;        /**< Top edge. */
    double width;      /**< Above 0. */
    double height;     /**< Above 0. */
    int32_t overhangs; /**< Not 0: wider or higher than the recording; it then stands out evenly on both sides. */
    int32_t reserved;  /**< Zero. */
} orvanta_frame;

/** How a move spreads over its time: a cubic Bezier from (0, 0) to (1, 1), as in CSS. */
typedef struct orvanta_easing {
    double x1; /**< 0 to 1. */
    double y1; /**< -10 to 10. */
    double x2; /**< 0 to 1. */
    double y2; /**< -10 to 10. */
} orvanta_easing;

/** One move of the camera: what leads to one keyframe's frame. */
typedef struct orvanta_move {
    int64_t start; /**< Ticks: when the camera sets off. A keyframe before the clip's start counts as standing at it. */
    int64_t stop;  /**< Ticks: when the move is over, or when the next one takes over; at most what fits. */
    double start_seconds; /**< `start` in seconds. */
    double stop_seconds;  /**< `stop` in seconds. */
    orvanta_frame from;   /**< On show at `start`, or until then with a fade of 0. */
    orvanta_frame to;     /**< Where the move leads; on show from `stop` on unless it is cut short. */
    int64_t keyframe;     /**< Which of the rows that the path was made from, in their order there, from 0. */
    int32_t cut_short;    /**< Not 0: the next move begins before this one is over, from where the camera is then. */
    int32_t reserved;     /**< Zero. */
} orvanta_move;

/** The camera's path through a clip. */
typedef struct orvanta_path orvanta_path;

/** Fills `*easing` with a preset: "linear", "ease-in-out", "ease-out" or "smooth". */
ORVANTA_C_EXPORT int32_t orvanta_easing_named(const char* name, orvanta_easing* easing, orvanta_error* error);

/**
 * Makes a path from a request's recording, output frame, fade and clip, and from keyframes: those of a result's table, or
 * others. `keyframes` points to the first of `count` rows that begin with the fields of an orvanta_timed_rect, as an
 * orvanta_keyframe does, `stride` bytes apart; a stride of 0 stands for orvanta_timed_rect's own size. They may come in
 * any order; of several at one time the last one counts. `easing` may be NULL: ease-in-out.
 *
 * `*path` is NULL after a failure. The time scale must be above 0, the fade not below 0, and each rectangle must cover a
 * pixel.
 */
ORVANTA_C_EXPORT int32_t orvanta_path_create(const orvanta_request* request, const void* keyframes, size_t count,
                                             size_t stride, const orvanta_easing* easing, orvanta_path** path,
                                             orvanta_error* error);
/** The frames on show at `count` moments, in ticks and in any order, into `frames`, which has room for as many. */
ORVANTA_C_EXPORT int32_t orvanta_path_frames_at_ticks(const orvanta_path* path, const int64_t* ticks, size_t count,
                                                      orvanta_frame* frames, orvanta_error* error);
/** The same for moments in seconds, fractions of a tick included. Nothing is written when one is not a number. */
ORVANTA_C_EXPORT int32_t orvanta_path_frames_at_seconds(const orvanta_path* path, const double* seconds, size_t count,
                                                        orvanta_frame* frames, orvanta_error* error);
/**
 * Gives the moves of a path, by time, as a table of orvanta_move. It belongs to the path, and is empty for one without
 * keyframes. Each keyframe has a move but those that another one at the same time replaces.
 */
ORVANTA_C_EXPORT int32_t orvanta_path_moves(const orvanta_path* path, orvanta_table* table, orvanta_error* error);
/** Frees a path and its table of moves; NULL is passed over. */
ORVANTA_C_EXPORT void orvanta_path_free(orvanta_path* path);

#ifdef __cplusplus
}
#endif

#endif
