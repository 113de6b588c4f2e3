// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Localization.h"

#include <QStringView>

#include <iterator>
#include <string_view>

// Rules for whoever changes a text; tst_localization checks them.
//
// - One word for one thing. The table's own words are:
//
//     en            id              es                ja
//     section       bagian          sección           セクション
//     shortcut      pintasan        acceso directo    ショートカット
//     template      templat         plantilla         テンプレート
//     snippet       cuplikan        fragmento         スニペット
//     hotkey        tombol pintas   atajo             ホットキー
//     bulk action   tindakan massal acción en lote    一括操作
//     tutorial      tutorial        tutorial          チュートリアル
//
//   "about.tagline" says "shortcut" for the key combination, so it is translated as hotkey.
// - Placeholders, <b>, line breaks, bullets and arrows are the same in every language.
// - A label named inside a sentence is worded exactly as that label's own row. "tour.type_desc"
//   names the "File" entry of the type menu, which is not translated. "tour.finish_desc" leads to
//   the page that can start the tutorial again; the translations call it by its title in the
//   settings.
// - Tone: Indonesian neutral, Spanish with "tú", Japanese です・ます in sentences and noun forms
//   in labels, full-width punctuation, a blank between Japanese and Latin text.

namespace
{

/// A row as it stands in the program's read-only data.
struct Row
{
    QStringView key;
    QStringView en;
    QStringView id;
    QStringView es;
    QStringView ja;
};

constexpr Row kRows[] = {
    // Dormant
    {u"test.hello", u"Hello", u"Halo", u"Hola", u"こんにちは"},

    // Settings view: categories, groups, deleting a section
    {u"settings.title", u"Settings", u"Pengaturan", u"Ajustes", u"設定"},
    {u"settings.group_color", u"Colors", u"Warna", u"Colores", u"カラー"},
    {u"settings.group_layout", u"Layout", u"Tata Letak", u"Diseño", u"レイアウト"},
    {u"settings.group_language", u"Language", u"Bahasa", u"Idioma", u"言語"},
    {u"settings.group_system", u"System", u"Sistem", u"Sistema", u"システム"},
    {u"settings.group_data", u"Data", u"Data", u"Datos", u"データ"},
    {u"settings.cat_display", u"Display", u"Tampilan", u"Apariencia", u"表示"},
    {u"settings.cat_app", u"Application", u"Aplikasi", u"Aplicación", u"アプリケーション"},
    {u"settings.cat_template", u"Templates", u"Templat", u"Plantillas", u"テンプレート"},
    {u"settings.cat_about", u"About", u"Tentang", u"Acerca de", u"このアプリについて"},
    {u"settings.del_section_title", u"Delete Section?", u"Hapus Bagian?", u"¿Eliminar la sección?",
     u"セクションを削除しますか？"},
    {u"settings.del_section_msg",
     u"Are you sure you want to delete '%1'?\n"
     u"This will also delete all items inside it.\n"
     u"This action cannot be undone.",
     u"Yakin ingin menghapus '%1'?\n"
     u"Semua item di dalamnya juga akan dihapus.\n"
     u"Tindakan ini tidak dapat dibatalkan.",
     u"¿Seguro que quieres eliminar '%1'?\n"
     u"También se eliminarán todos los elementos que contiene.\n"
     u"Esta acción no se puede deshacer.",
     u"'%1' を削除してもよろしいですか？\n"
     u"中の項目もすべて削除されます。\n"
     u"この操作は元に戻せません。"},

    // Settings: hotkey rows
    {u"settings.system.hotkey_title", u"Global Hotkey", u"Tombol Pintas Global", u"Atajo global",
     u"グローバルホットキー"},
    {u"settings.system.hotkey_spotlight_title", u"Spotlight Hotkey", u"Tombol Pintas Spotlight",
     u"Atajo de Spotlight", u"Spotlight ホットキー"},
    {u"settings.system.hotkey_record_btn", u"Record", u"Rekam", u"Grabar", u"記録"},
    {u"settings.system.hotkey_recording", u"Recording...", u"Merekam...", u"Grabando...",
     u"記録中..."},
    {u"settings.system.hotkey_hint", u"Press the key combination you want. Press Esc to cancel.",
     u"Tekan kombinasi tombol yang Anda inginkan. Tekan Esc untuk membatalkan.",
     u"Pulsa la combinación de teclas que quieras. Para cancelar, pulsa Esc.",
     u"設定したいキーの組み合わせを押してください。Esc を押すとキャンセルできます。"},

    // Welcome slides
    {u"onboarding.slide1.title", u"Welcome to Orlimo", u"Selamat Datang di Orlimo",
     u"Te damos la bienvenida a Orlimo", u"Orlimo へようこそ"},
    {u"onboarding.slide1.desc",
     u"A fast, keyboard-centric launcher to supercharge your workflow.\n"
     u"Press a global hotkey to summon it anywhere, anytime.",
     u"Peluncur cepat yang mengutamakan keyboard untuk melejitkan produktivitas Anda.\n"
     u"Tekan tombol pintas global untuk memanggilnya di mana saja, kapan saja.",
     u"Un lanzador rápido, pensado para el teclado, que da alas a tu forma de trabajar.\n"
     u"Pulsa un atajo global para abrirlo donde y cuando quieras.",
     u"キーボード中心の操作で作業を加速する、高速なランチャーです。\n"
     u"グローバルホットキーを押せば、いつでもどこでも呼び出せます。"},
    {u"onboarding.slide2.title", u"Core Features", u"Fitur Utama", u"Funciones principales",
     u"主な機能"},
    {u"onboarding.slide2.desc",
     u"• <b>URL Shortcuts</b>: Instantly open websites.\n"
     u"• <b>App & File</b>: Launch programs or open files quickly.\n"
     u"• <b>Bulk Actions</b>: Open multiple files/URLs with one hit.\n"
     u"• <b>Snippets</b>: Copy text directly to your clipboard.\n"
     u"Organize everything cleanly into custom Sections.",
     u"• <b>Pintasan URL</b>: Buka situs web seketika.\n"
     u"• <b>Aplikasi & File</b>: Jalankan program atau buka file dengan cepat.\n"
     u"• <b>Tindakan Massal</b>: Buka banyak file/URL sekaligus.\n"
     u"• <b>Cuplikan</b>: Salin teks langsung ke papan klip.\n"
     u"Tata semuanya dengan rapi dalam bagian buatan Anda sendiri.",
     u"• <b>Accesos directos a URL</b>: abre sitios web al instante.\n"
     u"• <b>Aplicaciones y archivos</b>: inicia programas o abre archivos rápidamente.\n"
     u"• <b>Acciones en lote</b>: abre varios archivos o URL a la vez.\n"
     u"• <b>Fragmentos</b>: copia texto directamente al portapapeles.\n"
     u"Organízalo todo en secciones a tu medida.",
     u"• <b>URL ショートカット</b>：Web サイトをすぐに開きます。\n"
     u"• <b>アプリとファイル</b>：プログラムやファイルをすばやく開きます。\n"
     u"• <b>一括操作</b>：複数のファイルや URL をまとめて開きます。\n"
     u"• <b>スニペット</b>：テキストをそのままクリップボードにコピーします。\n"
     u"すべてを自分好みのセクションですっきり整理できます。"},
    {u"onboarding.slide3.title", u"Example Usage", u"Contoh Penggunaan", u"Ejemplo de uso",
     u"使い方の例"},
    {u"onboarding.slide3.desc",
     u"1. Press the global hotkey (default: Ctrl+Alt+Space).\n"
     u"2. Start typing to filter your shortcuts instantly.\n"
     u"3. Use Arrow Keys to select an item.\n"
     u"4. Press Enter to execute it.",
     u"1. Tekan tombol pintas global (bawaan: Ctrl+Alt+Space).\n"
     u"2. Mulai mengetik untuk langsung menyaring pintasan Anda.\n"
     u"3. Gunakan tombol panah untuk memilih item.\n"
     u"4. Tekan Enter untuk menjalankannya.",
     u"1. Pulsa el atajo global (predeterminado: Ctrl+Alt+Space).\n"
     u"2. Empieza a escribir para filtrar tus accesos directos al instante.\n"
     u"3. Usa las teclas de flecha para seleccionar un elemento.\n"
     u"4. Pulsa Enter para ejecutarlo.",
     u"1. グローバルホットキーを押します（既定は Ctrl+Alt+Space）。\n"
     u"2. 文字を入力すると、ショートカットがすぐに絞り込まれます。\n"
     u"3. 矢印キーで項目を選びます。\n"
     u"4. Enter を押すと実行されます。"},
    {u"onboarding.slide4.title", u"Keyboard Navigation", u"Navigasi Keyboard",
     u"Navegación con el teclado", u"キーボード操作"},
    {u"onboarding.slide4.desc",
     u"<b>↑ / ↓</b> : Navigate items in a list\n"
     u"<b>← / →</b> : Switch sections or actions\n"
     u"<b>Enter</b> : Select / Execute\n"
     u"<b>Tab</b> : Open Settings\n"
     u"<b>Esc / Backspace</b> : Go back / Close Orlimo",
     u"<b>↑ / ↓</b> : Telusuri item dalam daftar\n"
     u"<b>← / →</b> : Ganti bagian atau tindakan\n"
     u"<b>Enter</b> : Pilih / Jalankan\n"
     u"<b>Tab</b> : Buka Pengaturan\n"
     u"<b>Esc / Backspace</b> : Kembali / Tutup Orlimo",
     u"<b>↑ / ↓</b> : Recorrer los elementos de una lista\n"
     u"<b>← / →</b> : Cambiar de sección o de acción\n"
     u"<b>Enter</b> : Seleccionar / Ejecutar\n"
     u"<b>Tab</b> : Abrir Ajustes\n"
     u"<b>Esc / Retroceso</b> : Volver / Cerrar Orlimo",
     u"<b>↑ / ↓</b>：リスト内を移動\n"
     u"<b>← / →</b>：セクションや操作を切り替え\n"
     u"<b>Enter</b>：選択 / 実行\n"
     u"<b>Tab</b>：設定を開く\n"
     u"<b>Esc / Backspace</b>：戻る / Orlimo を閉じる"},
    {u"onboarding.btn_prev", u"Prev", u"Sebelumnya", u"Anterior", u"前へ"},
    {u"onboarding.btn_next", u"Next", u"Berikutnya", u"Siguiente", u"次へ"},
    {u"onboarding.btn_start_tour", u"Start Tutorial", u"Mulai Tutorial", u"Iniciar tutorial",
     u"チュートリアルを開始"},

    // Home view
    {u"home.search_placeholder", u"Search...", u"Cari...", u"Buscar...", u"検索..."},
    {u"home.search_hint", u"Type to search", u"Ketik untuk mencari", u"Escribe para buscar",
     u"入力して検索"},
    {u"home.no_items",
     u"No shortcuts here yet.\n"
     u"Add your first one.",
     u"Belum ada pintasan di sini.\n"
     u"Tambahkan pintasan pertama Anda.",
     u"Aquí aún no hay accesos directos.\n"
     u"Añade el primero.",
     u"ここにはまだショートカットがありません。\n"
     u"最初の 1 つを追加しましょう。"},
    {u"home.no_results", u"Nothing matches your search.",
     u"Tidak ada yang cocok dengan pencarian Anda.", u"No hay nada que coincida con tu búsqueda.",
     u"検索に一致するものはありません。"},

    // Web rows
    {u"web.search", u"%1 — Google Search", u"%1 — Google Penelusuran", u"%1 — Búsqueda de Google",
     u"%1 — Google 検索"},
    {u"web.open", u"Open %1", u"Buka %1", u"Abrir %1", u"%1 を開く"},
    {u"web.youtube", u"%1 — YouTube", u"%1 — YouTube", u"%1 — YouTube", u"%1 — YouTube"},
    {u"web.engine_group", u"Search on %1: %2", u"Cari di %1: %2", u"Buscar en %1: %2",
     u"%1 で検索: %2"},
    {u"web.engine_group_empty", u"Search on %1", u"Cari di %1", u"Buscar en %1", u"%1 で検索"},
    {u"web.engine_hint", u"Type what to search…", u"Ketik yang ingin dicari…",
     u"Escribe lo que quieras buscar…", u"検索する内容を入力…"},

    // Preview tooltip
    {u"tooltip.more_lines", u"+%1 more", u"+%1 lagi", u"+%1 más", u"他 %1 件"},

    // Shared dialogs
    {u"dialog.pick_icon_title", u"Choose Icon", u"Pilih Ikon", u"Elegir icono", u"アイコンを選択"},
    {u"dialog.btn_default_icon", u"Default", u"Bawaan", u"Por defecto", u"既定"},
    {u"dialog.btn_ok", u"OK", u"OK", u"Aceptar", u"OK"},
    {u"dialog.btn_cancel", u"Cancel", u"Batal", u"Cancelar", u"キャンセル"},
    {u"dialog.btn_done", u"Done", u"Selesai", u"Listo", u"完了"},
    {u"dialog.btn_yes", u"Yes", u"Ya", u"Sí", u"はい"},
    {u"dialog.btn_no", u"No", u"Tidak", u"No", u"いいえ"},
    {u"dialog.btn_save", u"Save", u"Simpan", u"Guardar", u"保存"},
    {u"dialog.btn_delete", u"Delete", u"Hapus", u"Eliminar", u"削除"},
    {u"dialog.add_section_title", u"Add Section", u"Tambah Bagian", u"Añadir sección",
     u"セクションを追加"},
    {u"dialog.edit_section_title", u"Edit Section", u"Edit Bagian", u"Editar sección",
     u"セクションを編集"},
    {u"dialog.lbl_section_name", u"Section Name:", u"Nama Bagian:", u"Nombre de la sección:",
     u"セクション名："},
    {u"dialog.lbl_icon", u"Icon:", u"Ikon:", u"Icono:", u"アイコン："},
    {u"dialog.section_name_placeholder", u"Enter Section Name...", u"Masukkan Nama Bagian...",
     u"Nombre de la sección...", u"セクション名を入力..."},
    {u"dialog.err_section_empty", u"Section name cannot be empty.",
     u"Nama bagian tidak boleh kosong.", u"El nombre de la sección no puede estar vacío.",
     u"セクション名を入力してください。"},
    {u"dialog.err_section_exists", u"A section with that name already exists.",
     u"Bagian dengan nama itu sudah ada.", u"Ya existe una sección con ese nombre.",
     u"同じ名前のセクションが既に存在します。"},

    // About page
    {u"about.tagline", u"Open your apps, files, and links from anywhere with one shortcut.",
     u"Buka aplikasi, file, dan tautan Anda dari mana saja dengan satu tombol pintas.",
     u"Abre tus aplicaciones, archivos y enlaces desde cualquier lugar con un solo atajo.",
     u"どこからでも、ホットキー 1 つでアプリやファイル、リンクを開けます。"},
    {u"about.hotkey_label", u"Press %1 to open Orlimo", u"Tekan %1 untuk membuka Orlimo",
     u"Pulsa %1 para abrir Orlimo", u"%1 を押すと Orlimo が開きます"},
    {u"about.prerelease", u"Pre-release", u"Prarilis", u"Versión preliminar", u"プレリリース版"},
    {u"about.tour_title", u"Tutorial", u"Tutorial", u"Tutorial", u"チュートリアル"},
    {u"about.btn_start_tour", u"Start Tutorial", u"Mulai Tutorial", u"Iniciar tutorial",
     u"チュートリアルを開始"},
    {u"about.store_title", u"Microsoft Store", u"Microsoft Store", u"Microsoft Store",
     u"Microsoft Store"},
    {u"about.btn_store", u"Open Page", u"Buka Halaman", u"Abrir página", u"ページを開く"},
    {u"about.feedback_title", u"Feedback & Suggestions", u"Masukan & Saran",
     u"Comentarios y sugerencias", u"ご意見・ご要望"},
    {u"about.copied", u"Copied", u"Disalin", u"Copiado", u"コピーしました"},

    // Guided tour
    {u"tour.btn_begin", u"Begin", u"Mulai", u"Empezar", u"始める"},
    {u"tour.btn_next", u"Next", u"Berikutnya", u"Siguiente", u"次へ"},
    {u"tour.btn_finish", u"Done", u"Selesai", u"Listo", u"完了"},
    {u"tour.step_counter", u"%1 of %2", u"%1 dari %2", u"%1 de %2", u"%1 / %2"},
    {u"tour.welcome_title", u"Let's set up your first shortcut",
     u"Mari siapkan pintasan pertama Anda", u"Vamos a crear tu primer acceso directo",
     u"最初のショートカットを作りましょう"},
    {u"tour.welcome_desc",
     u"You'll build a real section and a real shortcut — nothing is a demo. It takes about a "
     u"minute.",
     u"Anda akan membuat bagian dan pintasan sungguhan — ini bukan sekadar demo. Hanya perlu "
     u"sekitar satu menit.",
     u"Vas a crear una sección y un acceso directo de verdad; nada de demostraciones. Te llevará "
     u"alrededor de un minuto.",
     u"デモではなく、実際に使えるセクションとショートカットを作ります。1 分ほどで終わります。"},
    {u"tour.section_title", u"Create a section", u"Buat bagian", u"Crea una sección",
     u"セクションを作る"},
    {u"tour.section_desc",
     u"Press +, then choose Add Section — not Add Shortcut. A shortcut needs a section to live "
     u"in first.",
     u"Tekan +, lalu pilih Tambah Bagian — bukan Tambah Pintasan. Sebelum ada pintasan, harus "
     u"ada bagian sebagai tempatnya.",
     u"Pulsa + y elige \"Añadir sección\", no \"Añadir acceso directo\". Primero hace falta una "
     u"sección en la que guardar el acceso directo.",
     u"+ を押し、「ショートカットを追加」ではなく「セクションを追加」を選びます。"
     u"ショートカットを置くには、まずセクションが必要です。"},
    {u"tour.section_dialog_title", u"Name your section", u"Beri nama bagian Anda",
     u"Ponle nombre a tu sección", u"セクションに名前を付ける"},
    {u"tour.section_dialog_desc",
     u"Type a name, pick an icon if you like, then press Save. The name is the only thing "
     u"required.",
     u"Ketik nama, pilih ikon jika mau, lalu tekan Simpan. Hanya nama yang wajib diisi.",
     u"Escribe un nombre, elige un icono si quieres y pulsa \"Guardar\". Lo único obligatorio es "
     u"el nombre.",
     u"名前を入力し、必要ならアイコンを選んで「保存」を押します。必須なのは名前だけです。"},
    {u"tour.pill_title", u"That's your section", u"Inilah bagian Anda", u"Esta es tu sección",
     u"これが作成したセクションです"},
    {u"tour.pill_desc",
     u"Sections live here. Once you have more than one, ← and → move between them.",
     u"Semua bagian ada di sini. Jika sudah lebih dari satu, gunakan ← dan → untuk berpindah.",
     u"Aquí están tus secciones. Cuando tengas más de una, usa ← y → para pasar de una a otra.",
     u"セクションはここに並びます。2 つ以上になると、← と → で切り替えられます。"},
    {u"tour.item_title", u"Now add a shortcut", u"Sekarang tambahkan pintasan",
     u"Ahora añade un acceso directo", u"次はショートカットを追加"},
    {u"tour.item_desc",
     u"Press + again and choose Add Shortcut. I'll walk you through the form field by field.",
     u"Tekan + lagi dan pilih Tambah Pintasan. Saya akan memandu Anda mengisi formulirnya kolom "
     u"demi kolom.",
     u"Vuelve a pulsar + y elige \"Añadir acceso directo\". Te guiaré por el formulario campo "
     u"por campo.",
     u"もう一度 + を押し、「ショートカットを追加」を選びます。フォームの入力を 1 "
     u"項目ずつご案内します。"},
    {u"tour.type_title", u"Pick the type", u"Pilih jenisnya", u"Elige el tipo", u"種類を選ぶ"},
    {u"tour.type_desc", u"This decides what the shortcut opens. Tap it and choose File.",
     u"Jenis menentukan apa yang dibuka pintasan ini. Klik, lalu pilih File.",
     u"Determina qué abre el acceso directo. Haz clic aquí y elige \"File\".",
     u"ショートカットで何を開くかを決めます。ここをクリックして「File」を選びます。"},
    {u"tour.name_title", u"Give it a name", u"Beri nama", u"Ponle un nombre", u"名前を付ける"},
    {u"tour.name_desc",
     u"This is what you'll see in the list — and what you'll type to search for it.",
     u"Nama inilah yang tampil di daftar — dan yang Anda ketik untuk mencarinya.",
     u"Es lo que verás en la lista y lo que escribirás para buscarlo.",
     u"リストに表示される名前です。検索するときもこの名前を入力します。"},
    {u"tour.file_title", u"Choose the file", u"Pilih filenya", u"Elige el archivo",
     u"ファイルを選ぶ"},
    {u"tour.file_desc", u"Press Browse and pick any file. You can also type the path in by hand.",
     u"Tekan Jelajahi dan pilih file apa saja. Jalurnya juga bisa diketik sendiri.",
     u"Pulsa \"Examinar\" y elige cualquier archivo. También puedes escribir la ruta a mano.",
     u"「参照」を押して、好きなファイルを選びます。パスを直接入力することもできます。"},
    {u"tour.save_title", u"Save it", u"Simpan", u"Guárdalo", u"保存する"},
    {u"tour.save_desc", u"That's everything this shortcut needs.",
     u"Hanya itu yang diperlukan pintasan ini.", u"Este acceso directo no necesita nada más.",
     u"このショートカットに必要な入力は以上です。"},
    {u"tour.run_title", u"Run it", u"Jalankan", u"Ejecútalo", u"実行する"},
    {u"tour.run_desc", u"Select a shortcut and press Enter to open it. Space opens its actions.",
     u"Pilih pintasan, lalu tekan Enter untuk membukanya. Tekan Spasi untuk melihat tindakannya.",
     u"Selecciona un acceso directo y pulsa Enter para abrirlo. Pulsa Espacio para ver sus "
     u"acciones.",
     u"ショートカットを選び、Enter を押すと開きます。スペースキーを押すと、"
     u"操作メニューが表示されます。"},
    {u"tour.finish_title", u"You're set", u"Semua siap", u"Todo listo", u"準備完了です"},
    {u"tour.finish_desc",
     u"Search from here when you have many shortcuts. Close this window and press your hotkey to "
     u"bring it back anytime.\n\n"
     u"Want this tour again? Settings › Overview.",
     u"Jika pintasan Anda sudah banyak, cari dari sini. Tutup jendela ini, lalu tekan tombol "
     u"pintas kapan saja untuk memunculkannya lagi.\n\n"
     u"Ingin mengulang tutorial ini? Pengaturan › Tentang.",
     u"Cuando tengas muchos accesos directos, búscalos desde aquí. Cierra esta ventana y pulsa "
     u"tu atajo cuando quieras recuperarla.\n\n"
     u"¿Quieres repetir el tutorial? Ajustes › Acerca de.",
     u"ショートカットが増えたら、ここから検索できます。このウィンドウを閉じても、"
     u"ホットキーを押せばいつでも呼び出せます。\n\n"
     u"もう一度チュートリアルを見るには、「設定 › このアプリについて」を開いてください。"},

    // Spotlight window
    {u"spotlight.type_app", u"Application", u"Aplikasi", u"Aplicación", u"アプリケーション"},
    {u"spotlight.type_url", u"Web Bookmark", u"Bookmark Web", u"Marcador web", u"Web ブックマーク"},
    {u"spotlight.type_file", u"File", u"File", u"Archivo", u"ファイル"},
    {u"spotlight.type_snippet", u"Snippet", u"Cuplikan", u"Fragmento", u"スニペット"},
    {u"spotlight.type_bulk", u"Bulk Action", u"Tindakan Massal", u"Acción en lote", u"一括操作"},
    {u"spotlight.group_web", u"Web Search", u"Pencarian Web", u"Búsqueda web", u"Web 検索"},
    {u"spotlight.group_calc", u"Calculator", u"Kalkulator", u"Calculadora", u"電卓"},
    {u"spotlight.scope_all", u"All", u"Semua", u"Todo", u"すべて"},
    {u"spotlight.scope_folder", u"Folders", u"Folder", u"Carpetas", u"フォルダー"},
    {u"spotlight.group_apps", u"Installed Apps", u"Aplikasi Terpasang", u"Aplicaciones instaladas",
     u"インストール済みアプリ"},
    {u"spotlight.group_files", u"Files on this PC", u"File di PC Ini", u"Archivos de este PC",
     u"この PC のファイル"},
    {u"spotlight.group_folders", u"Folders on this PC", u"Folder di PC Ini", u"Carpetas de este PC",
     u"この PC のフォルダー"},
    {u"spotlight.filter_folders", u"Limit to folders...", u"Batasi ke folder...",
     u"Limitar a carpetas...", u"フォルダーで絞り込む..."},
    {u"spotlight.filter_add", u"Filter", u"Filter", u"Filtro", u"フィルター"},
    {u"spotlight.chip_remove", u"Remove this filter", u"Hapus filter ini", u"Quitar este filtro",
     u"このフィルターを解除"},
    {u"spotlight.files_preparing", u"Preparing file index...", u"Menyiapkan indeks file...",
     u"Preparando el índice de archivos...", u"ファイルのインデックスを準備中..."},

    // Spotlight settings
    {u"spotset.title", u"Search settings", u"Pengaturan pencarian", u"Ajustes de búsqueda",
     u"検索の設定"},
    {u"spotset.default_label", u"Default type", u"Jenis bawaan", u"Tipo predeterminado",
     u"既定の種類"},
    {u"spotset.n_types", u"%1 types", u"%1 jenis", u"%1 tipos", u"%1 種類"},
    {u"spotset.default_hint",
     u"The types every search starts from. You can still change them per search from the Filter "
     u"button.",
     u"Jenis yang dipakai di awal setiap pencarian. Anda tetap bisa mengubahnya untuk tiap "
     u"pencarian lewat tombol Filter.",
     u"Los tipos con los que empieza cada búsqueda. Aun así, puedes cambiarlos en cada una con "
     u"el botón \"Filtro\".",
     u"検索を始めるときに使われる種類です。検索ごとに「フィルター」ボタンから変更できます。"},

    // Folder picker
    {u"folderpick.title", u"Limit search to folders", u"Batasi pencarian ke folder",
     u"Limitar la búsqueda a carpetas", u"フォルダーで検索を絞り込む"},
    {u"folderpick.hint",
     u"Click to choose; more than one is allowed. Pick the first row to search every folder "
     u"again.",
     u"Klik untuk memilih; boleh lebih dari satu. Pilih baris pertama untuk kembali mencari di "
     u"semua folder.",
     u"Haz clic para elegir; puedes marcar más de una. Elige la primera fila para volver a "
     u"buscar en todas las carpetas.",
     u"クリックして選択します（複数選択可）。先頭の行を選ぶと、"
     u"再びすべてのフォルダーが検索されます。"},
    {u"folderpick.all", u"All folders", u"Semua folder", u"Todas las carpetas",
     u"すべてのフォルダー"},
    {u"folderpick.all_tip", u"Search without any folder restriction", u"Cari tanpa batasan folder",
     u"Buscar sin limitarse a ninguna carpeta", u"フォルダーを限定せずに検索"},
    {u"folderpick.add_other", u"Add another folder...", u"Tambah folder lain...",
     u"Añadir otra carpeta...", u"別のフォルダーを追加..."},
    {u"folderpick.row", u"%1  ·  %2 items", u"%1  ·  %2 item", u"%1  ·  %2 elementos",
     u"%1  ·  %2 件"},
    {u"folderpick.outside_title", u"Outside the home folder", u"Di luar folder pengguna",
     u"Fuera de la carpeta personal", u"ホームフォルダーの外です"},
    {u"folderpick.outside_msg",
     u"Search only covers your home folder (%1), so a folder outside it would never return "
     u"results.",
     u"Pencarian hanya mencakup folder pengguna Anda (%1), jadi folder di luarnya tidak akan "
     u"pernah memberi hasil.",
     u"La búsqueda solo abarca tu carpeta personal (%1), así que una carpeta que esté fuera "
     u"nunca daría resultados.",
     u"検索の対象はホームフォルダー（%1）の中だけです。その外のフォルダーを選んでも、"
     u"結果は表示されません。"},

    // Section templates
    {u"template.save_as", u"Save as Template", u"Simpan sebagai Templat", u"Guardar como plantilla",
     u"テンプレートとして保存"},
    {u"template.save_dialog_title", u"Save as Template", u"Simpan sebagai Templat",
     u"Guardar como plantilla", u"テンプレートとして保存"},
    {u"template.lbl_name", u"Template Name:", u"Nama Templat:", u"Nombre de la plantilla:",
     u"テンプレート名："},
    {u"template.name_placeholder", u"Enter Template Name...", u"Masukkan Nama Templat...",
     u"Nombre de la plantilla...", u"テンプレート名を入力..."},
    {u"template.err_name_empty", u"Template name cannot be empty.",
     u"Nama templat tidak boleh kosong.", u"El nombre de la plantilla no puede estar vacío.",
     u"テンプレート名を入力してください。"},
    {u"template.err_empty_section",
     u"This section has no shortcuts yet. Add at least one first — a template is only worth "
     u"what's inside it.",
     u"Bagian ini belum berisi pintasan. Tambahkan minimal satu dulu — templat hanya berguna "
     u"jika ada isinya.",
     u"Esta sección aún no tiene accesos directos. Añade antes al menos uno: una plantilla vale "
     u"lo que lleva dentro.",
     u"このセクションにはまだショートカットがありません。中身があってこそのテンプレートなので、"
     u"まず 1 つ以上追加してください。"},
    {u"template.from_template", u"Section from Template", u"Bagian dari Templat",
     u"Sección desde plantilla", u"テンプレートからセクションを作成"},
    {u"template.manage", u"Manage Templates", u"Kelola Templat", u"Gestionar plantillas",
     u"テンプレートを管理"},
    {u"template.use_dialog_title", u"New Section from Template", u"Bagian Baru dari Templat",
     u"Nueva sección desde plantilla", u"テンプレートから新規セクション"},
    {u"template.confirm_overwrite_title", u"Template Already Exists", u"Templat Sudah Ada",
     u"La plantilla ya existe", u"テンプレートが既に存在します"},
    {u"template.confirm_overwrite_msg",
     u"A template named \"%1\" already exists.\n"
     u"Saving replaces its contents. Sections you already made from it are not affected.",
     u"Templat bernama \"%1\" sudah ada.\n"
     u"Jika disimpan, isinya akan diganti. Bagian yang sudah Anda buat dari templat itu tidak "
     u"terpengaruh.",
     u"Ya existe una plantilla llamada \"%1\".\n"
     u"Al guardar se reemplazará su contenido. Las secciones que ya hayas creado con ella no "
     u"cambiarán.",
     u"\"%1\" という名前のテンプレートは既に存在します。\n"
     u"保存すると内容が置き換えられます。"
     u"このテンプレートから作成済みのセクションには影響しません。"},
    {u"template.editor_empty",
     u"This template has no shortcuts yet.\n"
     u"Add the first one below.",
     u"Templat ini belum berisi pintasan.\n"
     u"Tambahkan yang pertama di bawah.",
     u"Esta plantilla aún no tiene accesos directos.\n"
     u"Añade el primero aquí abajo.",
     u"このテンプレートにはまだショートカットがありません。\n"
     u"下のボタンから最初の 1 つを追加してください。"},
    {u"template.err_no_items",
     u"A template needs at least one shortcut — that is the whole point of saving it.",
     u"Templat perlu berisi minimal satu pintasan — justru itulah gunanya disimpan.",
     u"Una plantilla necesita al menos un acceso directo: para eso se guarda.",
     u"テンプレートにはショートカットが 1 つ以上必要です。空のまま保存しても意味がありません。"},
    {u"template.item_count", u"%1 shortcuts", u"%1 pintasan", u"%1 accesos directos",
     u"%1 ショートカット"},
    {u"template.edit", u"Edit Name & Icon", u"Edit Nama & Ikon", u"Editar nombre e icono",
     u"名前とアイコンを編集"},
    {u"template.edit_dialog_title", u"Edit Name & Icon", u"Edit Nama & Ikon",
     u"Editar nombre e icono", u"名前とアイコンを編集"},
    {u"template.edit_contents", u"Edit Contents", u"Edit Isi", u"Editar contenido", u"内容を編集"},
    {u"template.edit_contents_title", u"Edit Contents", u"Edit Isi", u"Editar contenido",
     u"内容を編集"},
    {u"template.delete", u"Delete Template", u"Hapus Templat", u"Eliminar plantilla",
     u"テンプレートを削除"},
    {u"template.create_row_title", u"New template", u"Templat baru", u"Nueva plantilla",
     u"新しいテンプレート"},
    {u"template.btn_create", u"New Template", u"Templat Baru", u"Nueva plantilla",
     u"新しいテンプレート"},
    {u"template.create_dialog_title", u"New Template", u"Templat Baru", u"Nueva plantilla",
     u"新しいテンプレート"},
    {u"template.err_name_exists", u"A template with that name already exists.",
     u"Templat dengan nama itu sudah ada.", u"Ya existe una plantilla con ese nombre.",
     u"同じ名前のテンプレートが既に存在します。"},
    {u"template.confirm_delete_title", u"Delete Template?", u"Hapus Templat?",
     u"¿Eliminar la plantilla?", u"テンプレートを削除しますか？"},
    {u"template.confirm_delete_msg",
     u"Delete the template \"%1\"?\n"
     u"Sections you already made from it stay exactly as they are.",
     u"Hapus templat \"%1\"?\n"
     u"Bagian yang sudah Anda buat dari templat itu tetap seperti semula.",
     u"¿Eliminar la plantilla \"%1\"?\n"
     u"Las secciones que ya hayas creado con ella se quedan tal como están.",
     u"テンプレート \"%1\" を削除しますか？\n"
     u"このテンプレートから作成済みのセクションはそのまま残ります。"},
    {u"template.page_empty",
     u"No templates yet. There are two ways to make one:\n\n"
     u"• Use the button above to build one yourself.\n"
     u"• Or open a section's menu on the main screen and choose \"Save as Template\" — "
     u"everything inside it is kept, ready to reuse.",
     u"Belum ada templat. Ada dua cara membuatnya:\n\n"
     u"• Gunakan tombol di atas untuk menyusunnya sendiri.\n"
     u"• Atau buka menu sebuah bagian di layar utama, lalu pilih \"Simpan sebagai Templat\" — "
     u"semua isinya ikut disimpan dan siap dipakai lagi.",
     u"Aún no hay plantillas. Puedes crearlas de dos maneras:\n\n"
     u"• Usa el botón de arriba para montar una desde cero.\n"
     u"• O abre el menú de una sección en la pantalla principal y elige \"Guardar como "
     u"plantilla\": se conserva todo lo que contiene, listo para reutilizarlo.",
     u"テンプレートはまだありません。作り方は 2 つあります。\n\n"
     u"• 上のボタンを使って自分で作成します。\n"
     u"• または、メイン画面でセクションのメニューを開き、「テンプレートとして保存」を選びます。"
     u"中身がすべて保存され、いつでも再利用できます。"},

    // Menus and the actions panel
    {u"actions.title_shortcut", u"Shortcut Actions", u"Tindakan Pintasan",
     u"Acciones del acceso directo", u"ショートカットの操作"},
    {u"actions.edit_shortcut", u"Edit Shortcut", u"Edit Pintasan", u"Editar acceso directo",
     u"ショートカットを編集"},
    {u"actions.edit_shortcut_desc", u"Change name, icon, or target",
     u"Ubah nama, ikon, atau target", u"Cambiar el nombre, el icono o el destino",
     u"名前、アイコン、開く対象を変更します"},
    {u"actions.move_item", u"Move to Section", u"Pindahkan ke Bagian Lain", u"Mover a otra sección",
     u"別のセクションへ移動"},
    {u"actions.duplicate_shortcut", u"Duplicate Shortcut", u"Gandakan Pintasan",
     u"Duplicar acceso directo", u"ショートカットを複製"},
    {u"actions.delete_shortcut", u"Delete Shortcut", u"Hapus Pintasan", u"Eliminar acceso directo",
     u"ショートカットを削除"},
    {u"actions.delete_shortcut_desc", u"Remove this shortcut", u"Hapus pintasan ini",
     u"Quitar este acceso directo", u"このショートカットを削除します"},
    {u"actions.add_shortcut", u"Add Shortcut", u"Tambah Pintasan", u"Añadir acceso directo",
     u"ショートカットを追加"},
    {u"actions.add_section", u"Add Section", u"Tambah Bagian", u"Añadir sección",
     u"セクションを追加"},
    {u"actions.reorder_items", u"Reorder Items", u"Ubah Urutan Item", u"Reordenar elementos",
     u"項目を並べ替え"},
    {u"actions.reorder_sections", u"Reorder Sections", u"Ubah Urutan Bagian",
     u"Reordenar secciones", u"セクションを並べ替え"},
    {u"actions.edit_section", u"Edit Section", u"Edit Bagian", u"Editar sección",
     u"セクションを編集"},
    {u"actions.delete_section", u"Delete Section", u"Hapus Bagian", u"Eliminar sección",
     u"セクションを削除"},
    {u"actions.del_shortcut_title", u"Delete \"%1\"?", u"Hapus \"%1\"?", u"¿Eliminar \"%1\"?",
     u"\"%1\" を削除しますか？"},
    {u"actions.del_shortcut_msg", u"Are you sure you want to delete this shortcut?",
     u"Yakin ingin menghapus pintasan ini?", u"¿Seguro que quieres eliminar este acceso directo?",
     u"このショートカットを削除してもよろしいですか？"},

    // Reordering
    {u"reorder.err_empty", u"There are no shortcuts in this section yet. Add one first.",
     u"Belum ada pintasan di bagian ini. Tambahkan satu dulu.",
     u"Esta sección aún no tiene accesos directos. Añade uno primero.",
     u"このセクションにはまだショートカットがありません。先に追加してください。"},
    {u"reorder.err_single", u"There is only one shortcut here — nothing to reorder yet.",
     u"Baru ada satu pintasan di sini — belum ada yang perlu diurutkan.",
     u"Aquí solo hay un acceso directo: todavía no hay nada que reordenar.",
     u"ここにはショートカットが 1 つしかないため、まだ並べ替えられません。"},
    {u"reorder.err_searching", u"Clear the search box first — search results span every section.",
     u"Kosongkan kotak pencarian dulu — hasil pencarian mencakup semua bagian.",
     u"Vacía antes el cuadro de búsqueda: los resultados abarcan todas las secciones.",
     u"検索結果はすべてのセクションにまたがるため、先に検索ボックスを空にしてください。"},
    {u"reorder.err_single_section", u"There is only one section — nothing to reorder yet.",
     u"Baru ada satu bagian — belum ada yang perlu diurutkan.",
     u"Solo hay una sección: todavía no hay nada que reordenar.",
     u"セクションが 1 つしかないため、まだ並べ替えられません。"},
    {u"reorder.hint", u"Mouse: drag the cards. Keyboard: Space, then arrows. Enter when done.",
     u"Mouse: seret kartunya. Keyboard: Spasi, lalu tombol panah. Enter jika selesai.",
     u"Ratón: arrastra las tarjetas. Teclado: Espacio y luego las flechas. Enter para terminar.",
     u"マウス：カードをドラッグ。キーボード：スペースキーを押してから矢印キー。終わったら Enter。"},
    {u"reorder.hint_sections",
     u"Mouse: drag the sections. Keyboard: Space, then arrows. Enter when done.",
     u"Mouse: seret bagiannya. Keyboard: Spasi, lalu tombol panah. Enter jika selesai.",
     u"Ratón: arrastra las secciones. Teclado: Espacio y luego las flechas. Enter para terminar.",
     u"マウス：セクションをドラッグ。キーボード：スペースキーを押してから矢印キー。終わったら "
     u"Enter。"},

    // Item editor
    {u"editor.btn_upload", u"Browse", u"Jelajahi", u"Examinar", u"参照"},
    {u"editor.lbl_name", u"Shortcut Name:", u"Nama Pintasan:", u"Nombre del acceso directo:",
     u"ショートカット名："},
    {u"editor.ph_name_url", u"e.g. GitHub", u"mis. GitHub", u"p. ej., GitHub", u"例：GitHub"},
    {u"editor.ph_name_app", u"e.g. Visual Studio Code", u"mis. Visual Studio Code",
     u"p. ej., Visual Studio Code", u"例：Visual Studio Code"},
    {u"editor.ph_name_file", u"e.g. Monthly Report", u"mis. Laporan Bulanan",
     u"p. ej., Informe mensual", u"例：月次レポート"},
    {u"editor.ph_name_bulk", u"e.g. Start Work", u"mis. Mulai Kerja", u"p. ej., Empezar a trabajar",
     u"例：仕事を始める"},
    {u"editor.ph_name_snippet", u"e.g. Email Address", u"mis. Alamat Email",
     u"p. ej., Dirección de correo", u"例：メールアドレス"},
    {u"editor.ph_val_url", u"https://code.example.org/me/project", u"", u"", u""},
    {u"editor.ph_val_app", u"C:\\Program Files\\App\\app.exe", u"", u"", u""},
    {u"editor.ph_val_file", u"C:\\Users\\Me\\Documents\\report.pdf", u"", u"", u""},
    {u"editor.ph_val_bulk", u"One link or file path per line",
     u"Satu tautan atau jalur file per baris", u"Un enlace o una ruta de archivo por línea",
     u"リンクまたはファイルのパスを 1 行に 1 つずつ入力"},
    {u"editor.ph_val_snippet", u"Text that will be copied to the clipboard",
     u"Teks yang akan disalin ke papan klip", u"Texto que se copiará al portapapeles",
     u"クリップボードにコピーするテキスト"},
    {u"editor.lbl_type", u"Type:", u"Jenis:", u"Tipo:", u"種類："},
    {u"editor.lbl_section", u"Section:", u"Bagian:", u"Sección:", u"セクション："},
    {u"editor.lbl_url", u"URL Link:", u"Tautan URL:", u"Enlace (URL):", u"リンク（URL）："},
    {u"editor.lbl_file", u"File Path:", u"Jalur File:", u"Ruta del archivo:", u"ファイルのパス："},
    {u"editor.lbl_bulk", u"Bulk Data:", u"Isi Tindakan Massal:", u"Contenido del lote:",
     u"一括操作の内容："},
    {u"editor.lbl_snippet", u"Snippet Text:", u"Teks Cuplikan:", u"Texto del fragmento:",
     u"スニペットのテキスト："},
    {u"editor.err_name_empty", u"Shortcut name cannot be empty.",
     u"Nama pintasan tidak boleh kosong.", u"El nombre del acceso directo no puede estar vacío.",
     u"ショートカット名を入力してください。"},
    {u"editor.err_val_empty", u"Shortcut value (URL/Path) cannot be empty.",
     u"Nilai pintasan (URL/jalur) tidak boleh kosong.",
     u"El valor del acceso directo (URL o ruta) no puede estar vacío.",
     u"ショートカットの値（URL またはパス）を入力してください。"},
    {u"editor.err_no_section", u"Create a section first before adding a shortcut.",
     u"Buat bagian dulu sebelum menambahkan pintasan.",
     u"Crea una sección antes de añadir un acceso directo.",
     u"ショートカットを追加する前に、まずセクションを作成してください。"},

    // Settings: theme
    {u"settings.app.theme_title", u"Theme", u"Tema", u"Tema", u"テーマ"},
    {u"settings.app.accent_title", u"Accent Color", u"Warna Aksen", u"Color de énfasis",
     u"アクセントカラー"},
    {u"settings.app.err_color", u"Invalid Color", u"Warna Tidak Valid", u"Color no válido",
     u"無効な色"},
    {u"settings.app.theme_auto", u"Auto", u"Otomatis", u"Automático", u"自動"},
    {u"settings.app.theme_light", u"Light", u"Terang", u"Claro", u"ライト"},
    {u"settings.app.theme_dark", u"Dark", u"Gelap", u"Oscuro", u"ダーク"},

    // Settings: grid
    {u"settings.layout.grid_columns", u"Grid Columns", u"Kolom Kisi", u"Columnas de la cuadrícula",
     u"グリッドの列数"},

    // Settings: hotkey reset, language
    {u"settings.sys.btn_reset", u"Reset", u"Reset", u"Restablecer", u"リセット"},
    {u"settings.sys.listening", u"Listening...", u"Menunggu tombol...", u"Esperando tecla...",
     u"キー入力待ち..."},
    {u"settings.sys.lang_title", u"Language", u"Bahasa", u"Idioma", u"言語"},

    // Settings: data page
    {u"settings.data.export_title", u"Export Data", u"Ekspor Data", u"Exportar datos",
     u"データの書き出し"},
    {u"settings.data.import_title", u"Import Data", u"Impor Data", u"Importar datos",
     u"データの読み込み"},
    {u"settings.data.btn_export", u"Export →", u"Ekspor →", u"Exportar →", u"書き出し →"},
    {u"settings.data.btn_import", u"← Import", u"← Impor", u"← Importar", u"← 読み込み"},
    {u"settings.data.export_success_title", u"Export Successful", u"Ekspor Berhasil",
     u"Exportación correcta", u"書き出しが完了しました"},
    {u"settings.data.export_success_msg",
     u"Data has been successfully exported to:\n"
     u"%1",
     u"Data berhasil diekspor ke:\n"
     u"%1",
     u"Los datos se han exportado correctamente a:\n"
     u"%1",
     u"データを次の場所に書き出しました：\n"
     u"%1"},
    {u"settings.data.export_fail_title", u"Export Failed", u"Ekspor Gagal", u"Exportación fallida",
     u"書き出しに失敗しました"},
    {u"settings.data.export_fail_msg",
     u"Failed to save export file:\n"
     u"%1",
     u"Gagal menyimpan file ekspor:\n"
     u"%1",
     u"No se pudo guardar el archivo exportado:\n"
     u"%1",
     u"書き出しファイルを保存できませんでした：\n"
     u"%1"},
    {u"settings.data.import_confirm_title", u"Confirm Import", u"Konfirmasi Impor",
     u"Confirmar importación", u"読み込みの確認"},
    {u"settings.data.import_confirm_msg",
     u"This will OVERWRITE all your existing settings, sections, shortcuts, and templates!\n"
     u"Are you absolutely sure you want to proceed?",
     u"Semua pengaturan, bagian, pintasan, dan templat Anda yang ada akan DITIMPA!\n"
     u"Anda benar-benar yakin ingin melanjutkan?",
     u"¡Se SOBRESCRIBIRÁN todos tus ajustes, secciones, accesos directos y plantillas actuales!\n"
     u"¿Seguro que quieres continuar?",
     u"既存の設定、セクション、ショートカット、テンプレートがすべて上書きされます！\n"
     u"本当に続けてもよろしいですか？"},
    {u"settings.data.import_success_title", u"Import Successful", u"Impor Berhasil",
     u"Importación correcta", u"読み込みが完了しました"},
    {u"settings.data.import_success_msg", u"Data has been successfully imported.",
     u"Data berhasil diimpor.", u"Los datos se han importado correctamente.",
     u"データを読み込みました。"},
    {u"settings.data.reset_title", u"Delete All Data", u"Hapus Semua Data",
     u"Eliminar todos los datos", u"すべてのデータを削除"},
    {u"settings.data.btn_reset", u"Delete", u"Hapus", u"Eliminar", u"削除"},
    {u"settings.data.reset_confirm_title", u"Delete All Data?", u"Hapus Semua Data?",
     u"¿Eliminar todos los datos?", u"すべてのデータを削除しますか？"},
    {u"settings.data.reset_confirm_msg",
     u"All your sections, shortcuts, and templates will be PERMANENTLY deleted and cannot be "
     u"recovered.\n"
     u"Export your data first if you might need it later.",
     u"Semua bagian, pintasan, dan templat Anda akan dihapus SECARA PERMANEN dan tidak dapat "
     u"dipulihkan.\n"
     u"Ekspor dulu data Anda jika mungkin masih diperlukan nanti.",
     u"Todas tus secciones, accesos directos y plantillas se eliminarán DE FORMA PERMANENTE y no "
     u"se podrán recuperar.\n"
     u"Si crees que los vas a necesitar más adelante, exporta antes tus datos.",
     u"セクション、ショートカット、テンプレートはすべて完全に削除され、元に戻せません。\n"
     u"後で必要になりそうな場合は、先にデータを書き出してください。"},
    {u"settings.data.btn_reset_confirm", u"Delete Everything", u"Hapus Semuanya", u"Eliminar todo",
     u"すべて削除"},
    {u"settings.data.reset_success_title", u"Data Deleted", u"Data Dihapus", u"Datos eliminados",
     u"データを削除しました"},
    {u"settings.data.reset_success_msg", u"All data has been deleted.",
     u"Semua data telah dihapus.", u"Se han eliminado todos los datos.",
     u"すべてのデータを削除しました。"},
    {u"settings.data.import_fail_title", u"Import Failed", u"Impor Gagal", u"Importación fallida",
     u"読み込みに失敗しました"},
    {u"settings.data.import_fail_msg",
     u"Failed to read or parse import file:\n"
     u"%1",
     u"Gagal membaca atau mengurai file impor:\n"
     u"%1",
     u"No se pudo leer o interpretar el archivo de importación:\n"
     u"%1",
     u"ファイルの読み取りまたは解析に失敗しました：\n"
     u"%1"},

    // Launch failures and the tray
    {u"main.err_exec_title", u"Failed to execute: %1", u"Gagal menjalankan: %1",
     u"No se pudo ejecutar: %1", u"実行できませんでした：%1"},
    {u"main.err_exec_msg", u"Failed to execute local application!",
     u"Gagal menjalankan aplikasi lokal!", u"¡No se pudo ejecutar la aplicación local!",
     u"ローカルアプリケーションを実行できませんでした！"},
    {u"main.tray_show", u"Show", u"Tampilkan", u"Mostrar", u"表示"},
    {u"main.tray_exit", u"Exit", u"Keluar", u"Salir", u"終了"},
};

/// QStringView has no comparison that a compiler can do.
constexpr std::u16string_view keyOf(const Row& row)
{
    return {row.key.utf16(), static_cast<size_t>(row.key.size())};
}

constexpr bool areKeysDistinct()
{
    for (const auto* row = std::begin(kRows); row != std::end(kRows); ++row) {
        for (const auto* later = row + 1; later != std::end(kRows); ++later) {
            if (keyOf(*row) == keyOf(*later))
                return false;
        }
    }
    return true;
}

// A key that stands twice would lose one of its texts without a word.
static_assert(areKeysDistinct());
static_assert(std::size(kRows) == 222);

} // namespace

QMap<QString, LocalizedText> localizationTable()
{
    QMap<QString, LocalizedText> table;
    for (const Row& row : kRows)
        table.insert(row.key.toString(),
                     {row.en.toString(), row.id.toString(), row.es.toString(), row.ja.toString()});
    return table;
}
