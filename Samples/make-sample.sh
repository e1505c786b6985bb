#!/bin/sh
# Makes harbour.mp4 from harbour.srt: a harbour at dawn with a burned-in timecode and frame number, and the captions
# spoken. Run by hand when the captions change; the result is committed. Needs ffmpeg and espeak-ng.
set -eu

here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
seconds=40

run() { ffmpeg -nostdin -hide_banner -loglevel error -y "$@"; }
# A transparent picture: size, colour, and where it is opaque.
shape() { run -f lavfi -i "color=$3:s=$2,format=rgba,geq=r='r(X,Y)':g='g(X,Y)':b='b(X,Y)':a='255*($4)'" -frames:v 1 "$work/$1.png"; }

# --- Sound -----------------------------------------------------------------------------------------------------------
# begin in milliseconds, length in milliseconds, who, what
awk '
  function ms(t) { split(t, f, /[:,]/); return ((f[1] * 60 + f[2]) * 60 + f[3]) * 1000 + f[4] }
  BEGIN { RS = ""; FS = "\n" }
  {
    split($2, t, " --> "); text = ""
    for (i = 3; i <= NF; ++i) text = text (text == "" ? "" : " ") $i
    who = text ~ /ffff00/ ? "jon" : text ~ /♪/ ? "music" : text ~ /gull/ ? "gull" : text ~ /horn/ ? "horn" : "ida"
    gsub(/<[^>]*>|\{[^}]*\}/, "", text)
    print ms(t[1]) "|" (ms(t[2]) - ms(t[1])) "|" who "|" text
  }' "$here/harbour.srt" >"$work/lines"

set --
mix=""
count=0
while IFS='|' read -r begin length who text; do
  sound="$work/$count.wav"
  length_s=$(awk "BEGIN { print $length / 1000 }")
  case $who in
  music) # three notes to the bar, with the reed's overtones
    run -f lavfi -i "aevalsrc='0.13*(0.6+0.4*sin(2*PI*5*t))*(sin(2*PI*t*262*pow(2,mod(floor(t*3)*4,9)/12))+0.5*sin(4*PI*t*262*pow(2,mod(floor(t*3)*4,9)/12))+0.25*sin(6*PI*t*262*pow(2,mod(floor(t*3)*4,9)/12)))':s=44100:d=$length_s" \
      -af "afade=t=in:d=0.15,afade=t=out:st=$(awk "BEGIN { print $length_s - 0.3 }"):d=0.3" "$sound" ;;
  gull)
    run -f lavfi -i "aevalsrc='0.2*gt(sin(2*PI*1.4*t),0)*sin(2*PI*t*(1500-250*mod(1.4*t,1)))*sin(PI*mod(2.8*t,1))':s=44100:d=$length_s" "$sound" ;;
  horn)
    run -f lavfi -i "aevalsrc='0.14*(sin(2*PI*110*t)+0.7*sin(2*PI*165*t)+0.3*sin(2*PI*220*t))':s=44100:d=$length_s" \
      -af "afade=t=in:d=0.2,afade=t=out:st=$(awk "BEGIN { print $length_s - 0.5 }"):d=0.5,lowpass=f=700" "$sound" ;;
  *)
    voice=en-gb+f3
    pitch=55
    if [ "$who" = jon ]; then
      voice=en-gb+m3
      pitch=35
    fi
    # As slow as fits the caption.
    speed=135
    while :; do
      espeak-ng -v "$voice" -p "$pitch" -s "$speed" -w "$sound" -- "$text"
      spoken=$(ffprobe -v error -show_entries format=duration -of csv=p=0 "$sound")
      fits=$(awk "BEGIN { print $spoken <= $length_s + 0.3 }")
      [ "$fits" = 1 ] || [ "$speed" -ge 260 ] && break
      speed=$((speed + 5))
    done ;;
  esac
  set -- "$@" -i "$sound"
  mix="$mix[$count:a]aresample=44100,aformat=channel_layouts=mono,adelay=$begin[a$count];"
  count=$((count + 1))
done <"$work/lines"

labels=$(awk "BEGIN { for (i = 0; i < $count; ++i) printf \"[a%d]\", i }")
run "$@" -f lavfi -i "anoisesrc=color=brown:a=0.05:r=44100:d=$seconds:seed=7" -filter_complex \
  "$mix[$count:a]tremolo=f=0.2:d=0.7,lowpass=f=500[sea];$labels[sea]amix=inputs=$((count + 1)):normalize=0:duration=longest,alimiter=limit=0.9,atrim=0:$seconds[out]" \
  -map "[out]" "$work/sound.wav"

# --- Picture ---------------------------------------------------------------------------------------------------------
run -f lavfi -i "color=black:s=640x230,format=rgb24,geq=r='18+70*Y/H':g='22+40*Y/H':b='58+62*Y/H'" -frames:v 1 "$work/night.png"
run -f lavfi -i "color=black:s=640x230,format=rgb24,geq=r='110+145*pow(Y/H,1.4)':g='165+35*Y/H':b='215-95*pow(Y/H,2)'" -frames:v 1 "$work/day.png"
shape sun 120x120 0xfff0b0 "if(lt(hypot(X-60,Y-60),26),1,pow(max(0,1-hypot(X-60,Y-60)/60),2)*0.7)"
shape hills 640x70 0x31405a "gt(Y,38-16*sin(X/97)-9*sin(X/41+2)-3*sin(X/17))"
shape quay 200x54 0x4a4038 "gt(Y,20)+lt(mod(X,46),7)*gt(Y,8)"
shape houses 200x74 0x6e4a44 "gt(Y,24+22*gt(mod(X,66),33)+abs(mod(X,33)-16)*0.8)"
shape windows 200x74 0xffd98a "gt(Y,52)*lt(Y,61)*lt(mod(X+4,33),8)*lt(mod(X,99),70)"
shape tower 30x130 0xf2ece0 "gt(Y,14)*lt(abs(X-15),6+Y/22)"
shape stripes 30x130 0xb8443a "gt(Y,14)*lt(abs(X-15),6+Y/22)*lt(mod(Y,36),18)"
shape lamp 120x40 0xfff6c8 "lt(abs(Y-20),X/9)*(1-X/120)*0.6"
shape hull 110x26 0x7a2f2a "lt(abs(X-55),52-Y*0.9)*gt(Y,2)"
shape sail 110x96 0xf6efe2 "gt(X,58)*lt(X-58,(Y-4)*0.46)*lt(Y,88)+lt(X,54)*lt(54-X,(Y-18)*0.44)*lt(Y,88)+between(X,54,57)"
shape dory 64x16 0xc23b2e "lt(abs(X-32),30-Y*1.1)"
shape ferry 150x52 0xe8ecef "gt(Y,32)*lt(abs(X-75),74-(Y-32))+gt(Y,14)*lt(Y,32)*lt(abs(X-75),50)+lt(Y,14)*lt(abs(X-60),9)"
shape portholes 150x52 0x2b4a6b "between(Y,20,26)*lt(abs(X-75),46)*lt(mod(X,12),6)"
shape gull 40x16 0xf4f4f0 "lt(abs(Y-10+8*sin(abs(X-20)/20*2.6)),1.7)"

font=/usr/share/fonts/truetype/dejavu/DejaVuSansMono-Bold.ttf
still() { printf -- '-loop 1 -framerate 25 -t %s -i %s/%s.png ' "$seconds" "$work" "$1"; }
# shellcheck disable=SC2046 # every word is an argument
run $(still night) $(still day) $(still sun) $(still hills) $(still houses) $(still windows) $(still quay) \
  $(still tower) $(still stripes) $(still lamp) $(still hull) $(still sail) $(still dory) $(still ferry) \
  $(still portholes) $(still gull) -i "$work/sound.wav" -filter_complex "
  [0]format=gbrp[n];[1]format=gbrp[d];[n][d]blend=all_expr='A+(B-A)*min(1,T/30)',pad=640:360:0:0:black[sky];
  color=black:s=160x36:r=25:d=$seconds,format=gbrp,geq=
    r='(22+90*min(1,T/30))*(0.75+0.25*sin(X/(5+Y/3)+T*1.7+3*sin(Y/3-T)))+70*min(1,T/30)*exp(-pow((X-100+6*sin(Y/2+T*2))/9,2))':
    g='(44+88*min(1,T/30))*(0.80+0.20*sin(X/(5+Y/3)+T*1.7+3*sin(Y/3-T)))+45*min(1,T/30)*exp(-pow((X-100+6*sin(Y/2+T*2))/9,2))':
    b='(78+82*min(1,T/30))*(0.85+0.15*sin(X/(5+Y/3)+T*1.7+3*sin(Y/3-T)))',
    scale=640:144:flags=bicubic,format=rgba[sea];
  [4][5]overlay[town];[7][8]overlay[light];[10]pad=110:118:0:92:black@0[h];[h][11]overlay=0:0[boat];
  [13][14]overlay[ship];[15]split[g1][g2];
  [sky][2]overlay=x=340:y='205-3.6*t'[v1];[v1][3]overlay=0:170[v2];[v2][sea]overlay=0:216[v3];
  [v3][town]overlay=440:162[v4];[v4][6]overlay=440:206[v5];[v5][light]overlay=60:96[v6];
  [9]fade=t=out:st=18:d=6:alpha=1[beam];
  [v6][beam]overlay=x=76:y=88:enable='lt(mod(t,3),1.2)'[v7];
  [v7][ship]overlay=x='700-28*max(0,t-24)':y='196+1.5*sin(t*1.1)'[v8];
  [v8][boat]overlay=x='-120+16*t':y='160+4*sin(t*1.3)'[v9];
  [v9][12]overlay=x='392+3*sin(t*0.6)':y='268+3*sin(t*1.6+1)'[v10];
  [v10][g1]overlay=x='660-38*mod(t+4,20)':y='50+18*sin(t*1.1)'[v11];
  [v11][g2]overlay=x='-60+44*mod(t,17)':y='84+14*sin(t*1.4+2)'[v12];
  [v12]format=yuv420p,
  drawtext=fontfile=$font:fontsize=16:fontcolor=white:box=1:boxcolor=black@0.55:boxborderw=5:x=14:y=14:timecode='00\:00\:00\:00':rate=25,
  drawtext=fontfile=$font:fontsize=16:fontcolor=white:box=1:boxcolor=black@0.55:boxborderw=5:x=w-tw-14:y=14:text='frame %{eif\:n\:d\:4}'[video]" \
  -map "[video]" -map 16:a -t "$seconds" -r 25 -c:v libx264 -preset slow -crf 27 -g 50 -pix_fmt yuv420p \
  -c:a aac -b:a 64k -ac 1 -timecode 00:00:00:00 -movflags +faststart -map_metadata -1 -fflags +bitexact \
  -metadata title="Harbour" "$here/harbour.mp4"
ls -l "$here/harbour.mp4"
