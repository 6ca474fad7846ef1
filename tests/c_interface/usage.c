/* A host in C99: the whole road from a request to the path, and a failure that prints nothing. */
#include <stdio.h>
#include <string.h>

#include "orvanta_c.h"

#define CHECK(property)                                                                                                \
    do {                                                                                                               \
        if (!(property)) {                                                                                             \
            printf("usage.c:%d: does not hold: %s\n", __LINE__, #property);                                            \
            return 1;                                                                                                  \
        }                                                                                                              \
    } while (0)

/* A host's own record that begins with the fields of a sample. */
struct click {
    orvanta_action_sample sample;
    const char* button_name;
};

static void count_reports(double percent, void* user_data) {
    (void)percent;
    ++*(int*)user_data;
}

int main(void) {
    static const orvanta_timed_rect regions[] = {{0, {0, 0, 1280, 800}}};
    static const orvanta_cursor_sample cursor[] = {{0, 640, 400}, {9800, 200, 150}, {39800, 1100, 700}};
    static const struct click clicks[] = {
        {{10000, 0, 0}, "left"}, {{10100, 1, 0}, "left"}, {{40000, 0, 0}, "left"}, {{40100, 1, 0}, "left"}};
    static const double moments[] = {0.0, 10.0, 59.5};
    orvanta_frame frames[3];
    orvanta_options options;
    orvanta_request* request = NULL;
    orvanta_result* result = NULL;
    orvanta_path* path = NULL;
    orvanta_table table;
    orvanta_table moves;
    orvanta_error error;
    orvanta_run run;
    int reports = 0;
    size_t i;

    memset(&error, 0, sizeof error);
    error.struct_size = sizeof error;
    CHECK(orvanta_options_init(&options, sizeof options) == ORVANTA_OK);
    options.target_width = 640;
    options.target_height = 400;
    options.time_scale = 1000.0;
    options.fade_duration = 1000;
    options.clip_stop = 60000;
    CHECK(orvanta_request_create(&options, &request, &error) == ORVANTA_OK);
    CHECK(orvanta_request_set_regions(request, regions, 1, 0, &error) == ORVANTA_OK);
    CHECK(orvanta_request_set_cursor(request, cursor, 3, sizeof cursor[0], &error) == ORVANTA_OK);
    CHECK(orvanta_request_set_actions(request, clicks, 4, sizeof clicks[0], &error) == ORVANTA_OK);

    memset(&run, 0, sizeof run);
    run.struct_size = sizeof run;
    run.keep_stages = 1;
    run.progress = count_reports;
    run.user_data = &reports;
    CHECK(orvanta_plan(request, &run, &result, &error) == ORVANTA_OK);
    CHECK(error.code == ORVANTA_OK && error.message[0] == '\0');
    CHECK(reports > 0);
    CHECK(orvanta_result_table(result, ORVANTA_TABLE_KEYFRAMES, &table, &error) == ORVANTA_OK);
    CHECK(table.count > 0);
    for (i = 0; i < table.count; ++i) {
        const orvanta_keyframe* keyframe = ORVANTA_ROW(orvanta_keyframe, table, i);
        printf("from %.3f s on: %s, %d %d to %d %d\n", keyframe->seconds, orvanta_mode_name(keyframe->reason),
               (int)keyframe->rect.left, (int)keyframe->rect.top, (int)keyframe->rect.right,
               (int)keyframe->rect.bottom);
        CHECK(keyframe->seconds * 1000.0 == (double)keyframe->time);
    }

    CHECK(orvanta_path_create(request, table.rows, table.count, table.stride, NULL, &path, &error) == ORVANTA_OK);
    CHECK(orvanta_path_frames_at_seconds(path, moments, 3, frames, &error) == ORVANTA_OK);
    CHECK(frames[0].width == 1280.0 && frames[0].height == 800.0); /* The clip starts with the whole recording. */
    CHECK(frames[2].width < 1280.0);
    CHECK(orvanta_path_moves(path, &moves, &error) == ORVANTA_OK);
    CHECK(moves.count > 0 && ORVANTA_ROW(orvanta_move, moves, 0)->from.width == 1280.0);
    orvanta_path_free(path);
    orvanta_result_free(result);

    /* The C++ class prints the sizes at fault; this interface puts them into the error. */
    options.target_width = 63;
    CHECK(orvanta_request_set_options(request, &options, &error) == ORVANTA_OK);
    CHECK(orvanta_plan(request, NULL, &result, &error) == ORVANTA_BAD_TARGET_SIZE);
    CHECK(result == NULL);
    CHECK(error.code == ORVANTA_BAD_TARGET_SIZE && error.parameter == ORVANTA_PARAMETER_TARGET_WIDTH);
    CHECK(error.value == 63.0 && error.limit == 64.0);
    printf("%s\n", error.message);
    orvanta_request_free(request);
    return 0;
}
