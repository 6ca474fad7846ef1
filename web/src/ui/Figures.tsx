// Figures of the path, beside those of a camera that follows clicks.
import type { JSX } from "preact";
import type { Figures as FiguresOf } from "../camera/figures";
import type { Session } from "../session";
import { lengthText } from "../time/format";

interface Line {
    id: string;
    label: string;
    title: string;
    text: (figures: FiguresOf) => string;
}

function percent(share: number | null): string {
    return share === null ? "–" : `${Math.round(share * 100)} %`;
}

const kLines: readonly Line[] = [
    { id: "inside", label: "Presses in the picture", title: "Presses that are inside the frame at their moment", text: (f) => (f.presses === 0 ? "–" : `${f.pressesInside} of ${f.presses}`) },
    { id: "readable", label: "… readable", title: "Share of the time around presses (0.5 s before to 1 s after) in which they are in the picture at a zoom of 0.75 or more", text: (f) => percent(f.readable) },
    { id: "zoom", label: "Mean zoom", title: "Output pixels per recording pixel, mean over time", text: (f) => f.meanZoom.toFixed(2) },
    { id: "moves", label: "Moves a minute", title: "Moves of the camera a minute", text: (f) => f.movesPerMinute.toFixed(1) },
    { id: "travel", label: "Travel a minute", title: "Way of the frame's centre, in widths of the screen a minute", text: (f) => `${f.travel.toFixed(2)} screens` },
    { id: "still", label: "Longest still", title: "The longest time without a move", text: (f) => lengthText(f.longestStill) },
];

export function Figures({ session }: { session: Session }): JSX.Element {
    return (
        <section class="figures panel" aria-labelledby="figures-title">
            <h2 id="figures-title">Figures</h2>
            <table>
                <thead>
                    <tr>
                        <th scope="col"><span class="visually-hidden">Figure</span></th>
                        <th scope="col">This path</th>
                        <th scope="col" title="What a camera would score that goes to every press at zoom 1 and back to the whole after 2.5 s">Follow clicks</th>
                    </tr>
                </thead>
                <tbody>
                    {kLines.map((line) => (
                        <tr key={line.id} data-figure={line.id} title={line.title}>
                            <th scope="row">{line.label}</th>
                            <td>{line.text(session.figures.value)}</td>
                            <td class="muted">{line.text(session.clickFigures.value)}</td>
                        </tr>
                    ))}
                </tbody>
            </table>
        </section>
    );
}
