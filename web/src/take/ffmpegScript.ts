// The path as a filter script for the program ffmpeg, the same text as the command's (docs/formats.md): `scale` gives the
// whole recording the size at which the frame is twice the output, `crop` cuts the frame out, a last `scale` halves it.
import { kEasings } from "../camera/easing";
import type { Frame, Move } from "../camera/path";
import type { Session } from "../session";
import { shortest } from "./numbers";
import { videoSeconds } from "./videoClock";

/** 2^-40 of a move is below everything that a picture shows. */
const kHalvings = 40;

/** A stretch of the video's time in which one expression holds; it goes on to the next one's start. */
type Piece = { start: number; move: Move } | { start: number; rest: Frame };

function piecesOf(session: Session): Piece[] {
    const path = session.path.peek();
    const fadeTicks = session.model.stages.fadeTicks;
    const pieces: Piece[] = [{ start: 0, rest: path.whole }];
    path.moves.forEach((move, i) => {
        const stopTick = move.cutShort ? (path.moves[i + 1]?.startTick ?? move.startTick) : move.startTick + fadeTicks;
        if (stopTick > move.startTick) pieces.push({ start: videoSeconds(session, move.startTick), move });
        if (!move.cutShort) pieces.push({ start: videoSeconds(session, stopTick), rest: move.to });
    });
    return pieces;
}

/** A balanced tree of conditions: ffmpeg's expressions cannot be nested for each of thousands of keyframes. */
function treeOf(pieces: readonly Piece[], leaf: (piece: Piece) => string, first = 0, last = pieces.length): string {
    if (last - first === 1) return leaf(pieces[first] as Piece);
    const middle = first + Math.floor((last - first) / 2);
    const start = shortest((pieces[middle] as Piece).start);
    return `if(lt(t,${start}),${treeOf(pieces, leaf, first, middle)},${treeOf(pieces, leaf, middle, last)})`;
}

function bezier(first: number, second: number): string {
    return `3*(1-ld(5))*(1-ld(5))*ld(5)*${shortest(first)}+3*(1-ld(5))*ld(5)*ld(5)*${shortest(second)}+ld(5)*ld(5)*ld(5)`;
}

/** Puts the share of the way into variable 1, from the share of the time in variable 0. */
function easingSteps(session: Session): string {
    const { x1, y1, x2, y2 } = kEasings[session.easing.peek()];
    if ((x1 as number) === y1 && (x2 as number) === y2) return "st(1,ld(0));";
    return `st(2,0);st(3,1);st(4,0);while(lt(ld(4),${kHalvings}),st(5,(ld(2)+ld(3))/2);if(lt(${bezier(x1, x2)},ld(0)),st(2,ld(5)),st(3,ld(5)));st(4,ld(4)+1));st(1,${bezier(y1, y2)});`;
}

interface Axis {
    low: "left" | "top";
    size: "width" | "height";
}
const kAcross: Axis = { low: "left", size: "width" };
const kDown: Axis = { low: "top", size: "height" };

export function pathFfmpeg(session: Session): string {
    const { recording, stages: { target, fade } } = session.model;
    const pieces = piecesOf(session);
    // Variable 6: the frame's width.
    const widthSteps = [
        `st(0,${treeOf(pieces, (piece) => ("move" in piece ? `(t-${shortest(piece.start)})/${shortest(fade)}` : "0"))});`,
        easingSteps(session),
        `st(6,${treeOf(pieces, (piece) => ("move" in piece ? `${shortest(piece.move.from.width)}*pow(${shortest(piece.move.to.width / piece.move.from.width)},ld(1))` : shortest(piece.rest.width)))});`,
    ].join("");
    const scaled = (side: number): string => `2*round(${side * target.width}/ld(6))`;

    const movingEdge = ({ from, to }: Move, axis: Axis): string => {
        const limit = recording[axis.size];
        const size = axis === kAcross ? "ld(6)" : `ld(6)*${target.height}/${target.width}`;
        if (from[axis.size] <= limit && to[axis.size] <= limit) {
            const share = from.width === to.width ? "ld(1)" : `(ld(6)-${shortest(from.width)})/(${shortest(to.width - from.width)})`;
            return `${shortest(from[axis.low])}+(${shortest(to[axis.low] - from[axis.low])})*${share}`;
        }
        const fitting = from[axis.size] < limit ? from : to;
        if (fitting[axis.size] >= limit) return "0"; // It stands out all the way, and the recording is padded.
        return `if(gte(${size},${limit}),0,(${shortest(fitting[axis.low])})*(${limit}-${size})/${shortest(limit - fitting[axis.size])})`;
    };
    const lowEdge = (axis: Axis): string => {
        const side = recording[axis.size];
        const low = treeOf(pieces, (piece) => ("move" in piece ? movingEdge(piece.move, axis) : shortest(piece.rest[axis.low])));
        return `max(0,round((${low})*${scaled(side)}/${side}))`;
    };

    const path = session.path.peek();
    const overhangs = path.whole.overhangs || path.moves.some((move) => move.from.overhangs || move.to.overhangs);
    const double = { width: 2 * target.width, height: 2 * target.height };
    return [
        `format=yuv444p,scale=w='${widthSteps}${scaled(recording.width)}':h='${widthSteps}${scaled(recording.height)}':eval=frame:flags=bicubic`,
        ...(overhangs ? [`pad=w='max(iw,${double.width})':h='max(ih,${double.height})':x='(ow-iw)/2':y='(oh-ih)/2':eval=frame`] : []),
        `crop=w=${double.width}:h=${double.height}:x='${widthSteps}${lowEdge(kAcross)}':y='${widthSteps}${lowEdge(kDown)}':exact=1`,
        `scale=${target.width}:${target.height}:flags=bicubic,setsar=1,format=yuv420p\n`,
    ].join(",");
}

/** The command line that uses a script. */
export function ffmpegCommand(session: Session, video: string, file: string, out: string): string {
    const { start, stop } = session.model.stages.clipTicks;
    const from = videoSeconds(session, start);
    const to = videoSeconds(session, stop);
    const cut = `${from > 0 ? ` -ss ${shortest(from)}` : ""}${to > from ? ` -to ${shortest(to)}` : ""}`;
    return `ffmpeg -i ${video} -filter_script:v ${file}${cut} -c:a copy ${out}`;
}
